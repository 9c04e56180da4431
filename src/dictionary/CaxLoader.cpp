// Taking in the fields and enumerations of a CAD program from the document that the caller brings.
#include <utility>

#include "dictionary/MxDictionarys.h"
#include "foundation/Format.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"
#include "xml/XmlDoc.h"

namespace ORKBASE {
namespace {

constexpr const char16_t* kUnknownFieldType = u"cax dataType error.";

struct CaxType {
  std::int32_t dt;
  MXRULE_DATATYPE dataType;
};

// clang-format off
constexpr CaxType kCaxTypes[] = {
    {1, kNumDataType},
    {2, kNumDataType},
    {3, kNumDataType},
    {6, kNumDataType},
    {8, kNumDataType},
    {4, kDateDataType},
    {5, kStrDataType},
    {7, kVarDataType},
    {9, kPicDataType},
};
// clang-format on

MXRULE_DATATYPE FieldType(std::int32_t dt) {
  for (const CaxType& row : kCaxTypes) {
    if (row.dt == dt) return row.dataType;
  }
  // kept: a text is thrown, and the words that were read so far stay.
  throw kUnknownFieldType;
}

struct Names {
  std::u16string name;
  std::u16string dispName;
};

Names NamesOf(const MxXmlNode& node) {
  return {node.GetAttr(u"name"), node.GetAttr(u"dispName")};
}

MxWord FieldWord(const Names& table, const MxXmlNode& node, std::u16string_view prefix) {
  const Names field = NamesOf(node);
  MxWord word;
  word.symbol = kCAXFieldSymbol;
  word.dataType = word.baseType = FieldType(ReadInt(node.GetAttr(u"dt")));
  word.primary = u"thisDoc." + table.name + u"." + field.name;
  // kept: the names go into the template, so a "%" in one of them is a directive.
  word.outDesc = Format(u"%s." + table.dispName + u"." + field.dispName, {prefix});
  word.dtName = table.dispName;
  word.tabRealName = table.name;
  word.fldName = field.dispName;
  word.fldRealName = field.name;
  return word;
}

void ReadCaxTables(MxDictionary& dictionary, MxXmlDoc& doc, Language language) {
  const std::u16string prefix = LoadMessage(kMsgThisDoc, language);
  for (MxXmlNode table = doc.Find(u"//dd/tabs").FirstChild(); table; table = table.NextSibling()) {
    const Names names = NamesOf(table);
    const MxXmlNode fields = doc.Find(u"flds", &table);
    for (MxXmlNode field = fields.FirstChild(); field; field = field.NextSibling()) {
      dictionary.AddEntry(FieldWord(names, field, prefix));
    }
  }
}

std::u16string EnumPrimary(std::u16string_view program, const Names& enumeration,
                           const Names& value) {
  return std::u16string(program) + u"Enum." + enumeration.name + u"." + value.name;
}

/// Calls `use` for each value of each enumeration, in the order of the document.
template <class Use>
void ForEachEnumValue(MxXmlDoc& doc, Use use) {
  for (MxXmlNode node = doc.Find(u"//dd/enums").FirstChild(); node; node = node.NextSibling()) {
    const Names enumeration = NamesOf(node);
    for (MxXmlNode value = node.FirstChild(); value; value = value.NextSibling()) {
      use(enumeration, value);
    }
  }
}

void ReadCaxEnums(MxDictionary& dictionary, MxXmlDoc& doc, std::u16string_view program,
                  Language language) {
  const std::u16string enumText = LoadMessage(kMsgCaxEnum, language);
  ForEachEnumValue(doc, [&](const Names& enumeration, const MxXmlNode& node) {
    const Names value = NamesOf(node);
    MxWord word;
    word.symbol = kCAXEnumSymbol;
    word.dataType = kNumDataType;
    word.primary = EnumPrimary(program, enumeration, value);
    word.outDesc = Format(u"%s%s.%s.%s", {program, enumText, enumeration.dispName, value.dispName});
    dictionary.AddEntry(word);
  });
}

/// The SQL texts of enumeration words. A "|" makes lists of word and text, as in every replacement;
/// a later value of a word wins.
void ReadCaxEnumValues(MxDictionary& dictionary, MxXmlDoc& doc, std::u16string_view program) {
  ForEachEnumValue(doc, [&](const Names& enumeration, const MxXmlNode& node) {
    const std::u16string keys = EnumPrimary(program, enumeration, NamesOf(node));
    const std::u16string values = node.GetAttr(u"val");
    const auto texts = SplitText(values, u"|");
    std::size_t index = 0;
    for (const std::u16string_view key : SplitText(keys, u"|")) {
      const std::u16string_view text = index < texts.size() ? texts[index] : u"";
      dictionary.caxEnumValues.insert_or_assign(ToLower(key), std::u16string(text));
      ++index;
    }
  });
}

}  // namespace

std::u16string_view CaxProgramName(std::int32_t caxType) noexcept {
  switch (caxType) {
    case 1:
      return u"AutoCAD";
    case 2:
      return u"ProE";
    case 3:
      return u"SolidWorks";
  }
  return u"Unknown";
}

std::int32_t MxDictionarys::LoadCax(std::int32_t type, const std::u16string& document,
                                    Language language) {
  MxXmlDoc doc;
  if (const std::int32_t number = doc.Load(document); number != 0) {
    MxErrorRecord error;
    error.cause = kDocumentCause;
    error.number = number;
    error.text = doc.errDescription;
    return Fail(std::move(error));
  }
  const auto dictionary = std::make_shared<MxDictionary>(true);
  dictionary->language = language;
  Enter(std::u16string(kCaxMark) + Decimal(type), dictionary);
  const std::u16string_view program = CaxProgramName(type);
  // The SQL texts first: a field of unknown type ends the reading below by an exception.
  ReadCaxEnumValues(*dictionary, doc, program);
  ReadCaxTables(*dictionary, doc, language);
  ReadCaxEnums(*dictionary, doc, program, language);
  return 0;
}

}  // namespace ORKBASE
