// A caller that uses libxml2 itself and has set its globals to its own taste: the library leaves
// them as they are, prints nothing through them, and writes the same texts as before.
#include "Check.h"

#include <MxExpression.h>
#include <OrkPlatform.h>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstring>
#include <string>

using namespace ORKBASE;

namespace {

int told = 0;      // what the host's error functions were told
char hostContext;  // what the host gave them along

void HostError(void*, const char*, ...) {
  ++told;
}
void HostStructuredError(void*, xmlErrorPtr) {
  ++told;
}

// With a comment in it a document takes another road through the library than without.
const std::u16string kCommented =
    u"<tag primary=\"7\" symbol=\"0\" dataType=\"1\"><!-- kept --></tag>";
const std::u16string kBroken = u"<tag primary='7' symbol='0'";

struct Texts {
  std::u16string document, translated, sql, commented, refused;
  bool operator==(const Texts&) const = default;
};

Texts AllTexts() {
  MxExpression rules;
  Texts t;
  std::u16string sql, unused;
  Check(rules.Verify(kLogicDataType, u"1 + 2 > 2", t.document), "Verify");
  rules.GetSpec(t.document, kSqlServerDs, t.translated, t.sql, unused, false);
  rules.GetSpec(kCommented, kSqlServerDs, t.commented, sql, unused, false);
  Check(!rules.GetSpec(kBroken, kSqlServerDs, sql, sql, unused, false), "a broken document");
  t.refused = rules.errDescription();
  return t;
}

void SetHostTaste() {
  xmlIndentTreeOutput = 0;
  xmlTreeIndentString = "\t\t\t";
  xmlSaveNoEmptyTags = 1;
  xmlLineNumbersDefault(1);
  xmlSetGenericErrorFunc(&hostContext, HostError);
  xmlSetStructuredErrorFunc(&hostContext, HostStructuredError);
}

void CheckHostTaste() {
  Check(xmlIndentTreeOutput == 0, "indenting stays off");
  Check(std::strcmp(xmlTreeIndentString, "\t\t\t") == 0, "the indentation stays");
  Check(xmlSaveNoEmptyTags == 1, "empty elements stay long");
  Check(xmlLineNumbersDefaultValue == 1, "line numbers stay on");
  Check(xmlGenericError == HostError, "the error function stays");
  Check(xmlGenericErrorContext == &hostContext, "its context stays");
  Check(xmlStructuredError == HostStructuredError, "the structured error function stays");
  Check(xmlStructuredErrorContext == &hostContext, "its context stays too");
  Check(told == 0, "the library tells the host's functions nothing");
  Check(xmlGetLastError() == nullptr, "the host's last error stays");
}

void HostStillWorks() {
  Check(xmlReadMemory("<a", 2, nullptr, nullptr, 0) == nullptr, "the host's own bad document");
  Check(told > 0, "the host's functions hear of the host's own errors");
}

}  // namespace

int main() {
  SetThreadLanguage(u"en");
  const Texts before = AllTexts();
  xmlResetLastError();
  SetHostTaste();
  const Texts after = AllTexts();
  CheckHostTaste();
  Check(before == after, "the texts do not depend on the host");
  CheckText(
      after.document,
      uR"(<tag primary="&gt;" outDesc="&gt;" symbol="19" dataType="5" content="&gt;" semanticType="0">
  <tag primary="+" outDesc="+" symbol="16" dataType="1" content="+" semanticType="0">
    <tag primary="1" outDesc="1" symbol="0" dataType="1" content="1"/>
    <tag primary="2" outDesc="2" symbol="0" dataType="1" content="2"/>
  </tag>
  <tag primary="2" outDesc="2" symbol="0" dataType="1" content="2"/>
</tag>)",
      "the document is indented");
  CheckText(after.sql, u"1 + 2 > 2", "the SQL");
  HostStillWorks();
  xmlCleanupParser();
  return failures == 0 ? 0 : 1;
}
