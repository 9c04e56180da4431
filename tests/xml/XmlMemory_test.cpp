// Memory that runs out in the middle of a document, at every allocation in turn: of libxml2, and of
// everything else. What comes is the document, a document that does not parse, or `std::bad_alloc`;
// the address sanitizer counts what is left behind. A program of its own, since both kinds of
// allocation are replaced for the whole process.
#include "document/TagReader.h"
#include "document/TagTree.h"
#include "xml/XmlDoc.h"

#include "ScarceNew.h"
#include "Utf8.h"

#include <gtest/gtest.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

using namespace ORKBASE;

namespace {

/// How many allocations of libxml2 are left; negative: any number.
int xmlAllowance = -1;

bool Spend() noexcept {
  if (xmlAllowance == 0) return false;
  if (xmlAllowance > 0) --xmlAllowance;
  return true;
}

void* XmlMalloc(std::size_t size) {
  return Spend() ? std::malloc(size) : nullptr;
}
void* XmlRealloc(void* memory, std::size_t size) {
  return Spend() ? std::realloc(memory, size) : nullptr;
}
char* XmlStrdup(const char* text) {
  return Spend() ? strdup(text) : nullptr;
}

[[maybe_unused]] const int kReplaced = xmlMemSetup(std::free, XmlMalloc, XmlRealloc, XmlStrdup);

constexpr std::u16string_view kDocuments[] = {
    u"<tag text='a &amp; \u5BA2'>\n  <tag symbol='1' other='2'/>\n</tag>",
    u"<!-- a --><tag>b&lt;<![CDATA[c]]><?d e?></tag><?f?>",
    u"<p:tag xmlns:p='u' xmlns='v' p:text='1' q:r='2'><tag/></p:tag>",
    u"<?xml version='1.0' encoding='ISO-8859-1'?><tag text='\u00E9'/>",
    u"<?xml version='1.0' encoding='GBK' standalone='yes'?><tag text='a'/>",
    u"<!DOCTYPE tag [<!-- a --><?b c?><!ELEMENT tag (tag|b)*><!ATTLIST tag text (x|y) 'x'"
    u" xmlns:p CDATA 'u'><!ENTITY e 'f'><!NOTATION n SYSTEM 'o'>]><tag/>",
    u"<tag><tag></tag>",
};

std::string Read(std::u16string_view text) {
  TagTree tree;
  return ReadTagTree(text, tree) ? U8(tree.ToText()) : "does not parse";
}

std::string Load(std::u16string_view text) {
  MxXmlDoc doc;
  return doc.Load(text) == 0 ? U8(doc.Root().ToText()) : "does not parse";
}

/// libxml2 forgets the converter that it made for a declared encoding where it then gets no memory
/// to use it; what is allocated for such a text does not count as left behind.
[[maybe_unused]] constexpr std::u16string_view kWithConverter = u"encoding='GBK'";

/// Fails one allocation after the other until a run meets none.
template <class Answer>
void FailEachAllocation(int& left, Answer answer, std::u16string_view text) {
  const std::string whole = answer(text);
  constexpr int kMost = 5000;
  int n = 0;
  for (; n < kMost; ++n) {
    std::string got;
    Read(u"<tag");  // so that the next one makes its parser anew
    left = n;
    try {
      got = answer(text);
    } catch (const std::bad_alloc&) {
      got = "bad_alloc";
    }
    const bool exhausted = left == 0;
    left = -1;
    ASSERT_TRUE(got == whole || got == "bad_alloc" || got == "does not parse")
        << U8(text) << " at " << n << ": " << got;
    if (!exhausted) break;
  }
  EXPECT_LT(n, kMost);
  EXPECT_GT(n, 1);
  EXPECT_EQ(answer(text), whole);
}

}  // namespace

TEST(XmlMemory, LackInsideLibxml2IsNoCrashAndNoHalfDocument) {
  ASSERT_EQ(kReplaced, 0);
  for (const std::u16string_view text : kDocuments) {
#ifdef __SANITIZE_ADDRESS__
    std::optional<__lsan::ScopedDisabler> uncounted;
    if (text.find(kWithConverter) != text.npos) uncounted.emplace();
#endif
    FailEachAllocation(xmlAllowance, Load, text);
    FailEachAllocation(xmlAllowance, Read, text);
  }
}

TEST(XmlMemory, LackOutsideLibxml2IsNoCrashAndNoHalfDocument) {
  for (const std::u16string_view text : kDocuments) {
    FailEachAllocation(allowance, Load, text);
    FailEachAllocation(allowance, Read, text);
  }
}
