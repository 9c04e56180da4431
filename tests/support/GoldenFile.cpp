// Reading and running golden files.
#include "GoldenFile.h"

#include "MxExpression.h"
#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "RuleDialects.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "Utf8.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

using ORKBASE::MXRULE_DATATYPE;

const std::map<std::string, MXRULE_DATATYPE> kTypes = {
    {"number", ORKBASE::kNumDataType}, {"text", ORKBASE::kStrDataType},
    {"date", ORKBASE::kDateDataType},  {"logic", ORKBASE::kLogicDataType},
    {"any", ORKBASE::kVarDataType},    {"picture", ORKBASE::kPicDataType},
    {"link", ORKBASE::kLinkDataType},
};

const std::set<std::string> kModes = {"noIsNull", "twoParts", "formDataIn", "rt",    "rtId",
                                      "tables",   "cax",      "language",   "locale"};

class Reader {
 public:
  explicit Reader(const std::string& path) : path_(path) {}

  std::vector<GoldenBlock> Read() {
    std::ifstream file(path_);
    std::string line;
    while (std::getline(file, line)) {
      ++line_;
      Take(line);
    }
    EndBlock();
    return std::move(blocks_);
  }

 private:
  [[noreturn]] void Fail(const std::string& what) const {
    throw std::runtime_error(path_ + ":" + std::to_string(line_) + ": " + what);
  }

  void Take(const std::string& line) {
    if (line.empty() || line.front() == '#') return;
    const std::string word = line.substr(0, line.find_first_of(" :"));
    if (word == "==") {
      EndBlock();
      blocks_.push_back({path_, line_, line.substr(3), fileModes_, {}, {}, {}});
    } else if (word == "modes") {
      (blocks_.empty() ? fileModes_ : blocks_.back().modes) = ModesOf(line.substr(5));
    } else if (blocks_.empty()) {
      Fail("a line before the first title");
    } else if (kTypes.count(word) != 0 && line.compare(word.size(), 2, ": ") == 0) {
      blocks_.back().type = kTypes.at(word);
      blocks_.back().rule = line.substr(word.size() + 2);
    } else {
      TakeResult(line);
    }
  }

  std::map<std::string, std::string> ModesOf(const std::string& text) const {
    std::map<std::string, std::string> modes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
      const std::size_t equals = std::min(word.find('='), word.size());
      const std::string name = word.substr(0, equals);
      if (kModes.count(name) == 0) Fail("no mode " + name);
      modes[name] = equals < word.size() ? word.substr(equals + 1) : "";
    }
    return modes;
  }

  /// Databases, a side, and a text between bars or a failure.
  void TakeResult(const std::string& line) {
    const std::size_t bar = line.find('|');
    const bool isText = bar != line.npos && line.back() == '|' && line.size() > bar + 1;
    std::string head = line.substr(0, bar);
    std::string failure;
    for (const char* kind : {" error: ", " throws: ", " refused: "}) {
      const std::size_t at = line.find(kind);
      if (isText || at == line.npos) continue;
      head = line.substr(0, at);
      failure = line.substr(at + 1);
    }
    if (!isText && failure.empty()) Fail("neither a text nor a failure");
    std::vector<std::string> names;
    std::string side = isText ? "A" : "AB";
    std::istringstream words(head);
    for (std::string word; words >> word;) {
      if (word == "A" || word == "B") {
        side = word;
      } else {
        AddName(word, names);
      }
    }
    // `rest` in front of a side counts for that side alone.
    if (rest_) {
      rest_ = false;
      AddRest(side, names);
    }
    if (names.empty()) Fail("no database");
    for (const std::string& name : names) {
      if (!seen_.insert(name + side).second) Fail(name + " " + side + " twice");
      GoldenResult& result = blocks_.back().expected[name];
      const std::string text = isText ? line.substr(bar + 1, line.size() - bar - 2) : "";
      (side == "B" ? result.b : side == "A" ? result.a : result.failure) = isText ? text : failure;
    }
  }

  void AddName(const std::string& word, std::vector<std::string>& names) {
    if (word == "all" || word == "rest") {
      rest_ = true;
      return;
    }
    const ORKBASE::RuleDialect* dialect = ORKBASE::FindRuleDialect(U16(word));
    if (!dialect || U8(dialect->name) != word) Fail("no database " + word);
    names.push_back(word);
  }

  void AddRest(const std::string& side, std::vector<std::string>& names) const {
    for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
      const std::string name = U8(dialect.name);
      if (seen_.count(name + side) == 0 && seen_.count(name + "AB") == 0) names.push_back(name);
    }
  }

  void EndBlock() {
    if (blocks_.empty()) return;
    const GoldenBlock& block = blocks_.back();
    if (block.type == ORKBASE::kNoDataType) Fail("no rule in front of this line");
    for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
      const std::string name = U8(dialect.name);
      const bool failed = seen_.count(name + "AB") != 0;
      const bool sides =
          seen_.count(name + "A") != 0 && (seen_.count(name + "B") != 0) == block.Has("twoParts");
      if (failed == sides) Fail("nothing for " + name + " in front of this line");
    }
    seen_.clear();
  }

  std::string path_;
  int line_ = 0;
  bool rest_ = false;
  std::map<std::string, std::string> fileModes_;
  std::vector<GoldenBlock> blocks_;
  std::set<std::string> seen_;  // database and side, of the block at hand
};

const TempDatabase& GoldenTables() {
  static const TempDatabase database(SourceText("examples/shop.sql") +
                                     SourceText("tests/golden/golden.sql"));
  return database;
}

/// Whether `text` is the message with something in each place of its `%s`.
bool IsInstance(std::u16string_view text, std::u16string_view form) {
  const std::size_t place = form.find(u"%s");
  if (text.substr(0, place) != form.substr(0, place)) return false;
  if (place == form.npos) return text.size() == form.size();
  text.remove_prefix(place);
  for (;;) {
    if (IsInstance(text, form.substr(place + 2))) return true;
    if (text.empty()) return false;
    text.remove_prefix(1);
  }
}

/// The text behind the number of its message, out of those that may come here.
std::string Numbered(const std::u16string& text, std::initializer_list<std::int32_t> numbers) {
  for (const std::int32_t number : numbers) {
    if (IsInstance(text, ORKBASE::MessageText(number))) {
      return std::to_string(number) + " " + U8(text);
    }
  }
  return "? " + U8(text);
}

void SetModes(ORKBASE::MxExpression& rules, const GoldenBlock& block) {
  rules.set_useIsNull(!block.Has("noIsNull"));
  if (block.Has("formDataIn")) rules.set_formDataIn(std::stoi(block.Mode("formDataIn")));
  if (block.Has("rt")) rules.SetRt(U16(block.Mode("rt")));
  if (block.Has("rtId")) rules.set_rtId(U16(block.Mode("rtId")));
  if (block.Has("tables")) rules.SetDts(U16(block.Mode("tables")));
  if (block.Has("cax")) {
    rules.SetCAXDD(std::stoi(block.Mode("cax")), U16(SourceText("tests/golden/cax.xml")));
  }
  if (rules.errNumber() != 0) throw std::runtime_error(U8(rules.errDescription()));
}

}  // namespace

std::vector<std::string> GoldenFiles() {
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(ORKRULE_SOURCE_DIR "/tests/golden")) {
    if (entry.path().extension() == ".golden") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<GoldenBlock> ReadGoldenFile(const std::string& path) {
  return Reader(path).Read();
}

void PrepareForBlock(ORKBASE::MxExpression& rules, const GoldenBlock& block,
                     ORKBASE::ORKDB_DSType_ENUM dsType) {
  ConnectTo(rules, GoldenTables(), dsType);
  SetModes(rules, block);
}

GoldenResult RunGoldenBlock(const GoldenBlock& block, ORKBASE::ORKDB_DSType_ENUM dsType) {
  const ScopedLocale locale(block.Has("locale") ? block.Mode("locale").c_str() : "en_US.UTF-8");
  const ScopedLanguage language(U16(block.Has("language") ? block.Mode("language") : "en"));
  ORKBASE::MxExpression rules;
  PrepareForBlock(rules, block, dsType);
  std::u16string document;
  if (!rules.Verify(block.type, U16(block.rule), document)) {
    return {"", "",
            "refused: " + Numbered(rules.errDescription(),
                                   {6222, 6260, 6261, 6262, 6263, 6264, 6294, 6296, 6295})};
  }
  std::u16string translated;
  std::u16string a;
  std::u16string b;
  try {
    if (!rules.GetSpec(document, dsType, translated, a, b, block.Has("twoParts"))) {
      return {"", "", "failed: " + U8(rules.errDescription())};
    }
  } catch (const ORKBASE::Mx_Exception& refusal) {
    return {"", "", "error: " + Numbered(refusal.message, {6254, 6255, 6256, 6257})};
  } catch (const std::out_of_range&) {
    return {"", "", "throws: out_of_range"};
  }
  return {U8(a), U8(b), ""};
}
