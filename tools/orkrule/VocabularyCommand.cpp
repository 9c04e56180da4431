// `orkrule vocabulary`: the words of the rule language, from the documents that the engine makes
// for rule editors: one `item` with four attributes a word.
#include "Commands.h"
#include "Text.h"

#include "MxExpression.h"

#include <libxml/xmlreader.h>

#include <algorithm>
#include <memory>

namespace ORKTOOL {
namespace {

struct VocabularyOptions {
  std::string which;
  bool json = false;
  bool xml = false;
};

struct Word {
  std::string primary;
  std::string shown;
  std::int32_t type = 0;
  std::int32_t symbol = 0;
};

struct FreeReader {
  void operator()(xmlTextReader* reader) const { xmlFreeTextReader(reader); }
};

/// An attribute of the element that the reader stands on, "" where it has none.
std::string Attribute(xmlTextReader* reader, const char* name) {
  const auto attribute = reinterpret_cast<const xmlChar*>(name);
  const std::unique_ptr<xmlChar, xmlFreeFunc> value(xmlTextReaderGetAttribute(reader, attribute),
                                                    xmlFree);
  return value ? reinterpret_cast<const char*>(value.get()) : "";
}

Word WordOf(xmlTextReader* reader) {
  return {Attribute(reader, "primary"), Attribute(reader, "outdesc"),
          std::atoi(Attribute(reader, "datatype").c_str()),
          std::atoi(Attribute(reader, "symbol").c_str())};
}

std::vector<Word> WordsOf(const std::string& document) {
  std::vector<Word> words;
  const std::unique_ptr<xmlTextReader, FreeReader> reader(
      xmlReaderForMemory(document.data(), static_cast<int>(document.size()), nullptr, "UTF-8", 0));
  while (reader && xmlTextReaderRead(reader.get()) == 1) {
    const bool isItem = xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT &&
                        xmlTextReaderDepth(reader.get()) == 1;
    if (isItem) words.push_back(WordOf(reader.get()));
  }
  return words;
}

std::string TypeName(std::int32_t type) {
  for (const NamedType& named : kTypes) {
    if (type == named.type) return named.name;
  }
  return "";
}

std::size_t WidthOf(const std::string& text) {
  return DisplayWidth(FromUtf8(text).value_or(std::u16string()));
}

/// Word, type, and the canonical spelling where it is another one.
void Show(const std::vector<Word>& words) {
  constexpr std::size_t kGap = 2;
  constexpr std::size_t kTypeColumn = 8;
  std::size_t width = 0;
  for (const Word& word : words) width = std::max(width, WidthOf(word.shown));
  for (const Word& word : words) {
    std::string line = Padded(word.shown, width + kGap) + Padded(TypeName(word.type), kTypeColumn);
    if (word.primary != word.shown) line += word.primary;
    line.erase(line.find_last_not_of(' ') + 1);
    Print(line + "\n");
  }
}

void ShowJson(const std::vector<Word>& words) {
  Json list = Json::array();
  for (const Word& word : words) {
    list.push_back({{"word", word.shown},
                    {"primary", word.primary},
                    {"type", word.type},
                    {"symbol", word.symbol}});
  }
  PrintJson(list);
}

std::u16string DocumentOf(const std::string& which) {
  ORKBASE::MxExpression rules;
  if (which == "functions") return rules.GetDict_funcs();
  return which == "operators" ? rules.GetDict_operators() : rules.GetDict_sysVar();
}

ExitStatus Run(const VocabularyOptions& options) {
  const std::string document = ToUtf8(DocumentOf(options.which));
  if (options.xml) {
    Print(document + (document.ends_with('\n') ? "" : "\n"));
  } else if (options.json) {
    ShowJson(WordsOf(document));
  } else {
    Show(WordsOf(document));
  }
  return kDone;
}

}  // namespace

void AddVocabularyCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("vocabulary", "List the words of the rule language");
  const auto options = std::make_shared<VocabularyOptions>();
  command->add_option("KIND", options->which, "functions, operators or sysvars")
      ->required()
      ->check(CLI::IsMember({"functions", "operators", "sysvars"}));
  CLI::Option* const json = command->add_flag("--json", options->json, "Write JSON");
  command->add_flag("--xml", options->xml, "Write the document that rule editors get")
      ->excludes(json);
  AddLanguageOption(*command);
  command->footer("Example:\n  orkrule vocabulary functions --language zh-CN");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
