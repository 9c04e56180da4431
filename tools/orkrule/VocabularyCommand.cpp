// `orkrule vocabulary`: the words of the rule language, from the documents that the engine makes
// for rule editors. They are flat: one `item` with four attributes a word, which a few lines read.
#include "Commands.h"
#include "Text.h"

#include "MxExpression.h"

#include <algorithm>
#include <charconv>
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

/// The character of a reference such as `amp`, `#60` or `#x4E2D`.
char32_t Referred(std::string_view name) {
  // clang-format off
  constexpr struct { std::string_view name; char32_t character; } kNamed[] = {
      {"lt", U'<'}, {"gt", U'>'}, {"amp", U'&'}, {"quot", U'"'}, {"apos", U'\''},
  };
  // clang-format on
  for (const auto& named : kNamed) {
    if (name == named.name) return named.character;
  }
  const bool hexadecimal = name.starts_with("#x");
  const std::string_view digits = name.substr(std::min(name.size(), hexadecimal ? 2ul : 1ul));
  std::uint32_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, hexadecimal ? 16 : 10);
  return number;
}

std::string WithoutReferences(std::string_view value) {
  std::string text;
  for (std::size_t at = 0; at < value.size();) {
    const std::size_t end = value[at] == '&' ? value.find(';', at) : value.npos;
    if (end == value.npos) {
      text += value[at++];
      continue;
    }
    const char32_t character = Referred(value.substr(at + 1, end - at - 1));
    std::u16string wide;
    if (character >= 0x10000) wide += static_cast<char16_t>(0xD7C0 + (character >> 10));
    const char32_t last = character >= 0x10000 ? 0xDC00 + (character & 0x3FF) : character;
    text += ToUtf8(wide + static_cast<char16_t>(last));
    at = end + 1;
  }
  return text;
}

std::string Attribute(std::string_view element, const std::string& name) {
  const std::string opening = " " + name + "=\"";
  const std::size_t found = element.find(opening);
  if (found == element.npos) return "";
  const std::size_t begin = found + opening.size();
  return WithoutReferences(element.substr(begin, element.find('"', begin) - begin));
}

std::vector<Word> WordsOf(const std::string& document) {
  std::vector<Word> words;
  constexpr std::string_view kItem = "<item ";
  for (std::size_t at = document.find(kItem); at != document.npos;
       at = document.find(kItem, at + 1)) {
    const std::string_view element =
        std::string_view(document).substr(at, document.find("/>", at) - at);
    words.push_back({Attribute(element, "primary"), Attribute(element, "outdesc"),
                     std::atoi(Attribute(element, "datatype").c_str()),
                     std::atoi(Attribute(element, "symbol").c_str())});
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
