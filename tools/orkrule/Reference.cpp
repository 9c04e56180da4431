#include "Reference.h"

#include "Markdown.h"
#include "Output.h"
#include "Text.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

namespace ORKTOOL {
namespace {

constexpr const char* kFence = "```";

/// A kind of block, and the kind that its readers see.
struct FenceRow {
  std::string_view kind;
  std::string_view shown;
};

// clang-format off
constexpr FenceRow kFences[] = {
    {"rule",    "rule"},
    {"sql",     "rule"},
    {"split",   "rule"},
    {"refused", "refused"},
    {"wrong",   "refused"},
};
// clang-format on

const FenceRow* FenceNamed(std::string_view kind) {
  const auto* const found = std::ranges::find(kFences, kind, &FenceRow::kind);
  return found == std::end(kFences) ? nullptr : found;
}

[[noreturn]] void FailFill(const std::string& place, const std::string& what) {
  throw Failure{kInputOutput, place + ": " + what};
}

std::string FilledText(std::string text, const std::vector<std::string>& arguments) {
  std::size_t at = 0;
  for (const std::string& argument : arguments) {
    at = text.find("%s", at);
    if (at == text.npos) break;
    text.replace(at, 2, argument);
    at += argument.size();
  }
  return text;
}

/// Names under what they have in common, in the order in which each first came.
class NameGroups {
 public:
  void Add(const std::string& key, std::string_view name) {
    const auto same = [&](const Group& group) { return group.first == key; };
    auto found = std::ranges::find_if(groups_, same);
    if (found == groups_.end()) found = groups_.insert(found, {key, {}});
    found->second.emplace_back(name);
  }
  using Group = std::pair<std::string, std::vector<std::string>>;
  const std::vector<Group>& All() const noexcept { return groups_; }

 private:
  std::vector<Group> groups_;
};

/// The name in front of the first bracket.
std::string CalledFunction(const std::string& rule, const std::string& place) {
  const std::size_t bracket = rule.find('(');
  if (bracket == rule.npos) FailFill(place, "no function is called");
  const std::size_t blank = rule.rfind(' ', bracket);
  return rule.substr(blank == rule.npos ? 0 : blank + 1, bracket - (blank + 1));
}

}  // namespace

/// A word of the list, with the example that shows it.
struct Reference::Word {
  std::string type;
  VerifiedRule rule;
  std::size_t offset;
  ORKBASE::RuleExplanation explanation;

  std::u16string Name() const {
    return rule.text.substr(static_cast<std::size_t>(explanation.offset),
                            static_cast<std::size_t>(explanation.length));
  }
};

std::string Reference::Fill(const std::string& text, const std::string& name) {
  std::istringstream lines(text);
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    TakeLine(line, name + ":" + std::to_string(++number));
  }
  CheckAllTaken();
  return std::move(out_);
}

void Reference::TakeLine(const std::string& line, const std::string& place) {
  if (line.starts_with(kFence)) {
    OpenFence(line);
  } else if (isFenced_) {
    TakeFenced(line, place);
  } else if (!TakeDirective(line, place)) {
    out_ += line + "\n";
  }
}

// --- what stands in a line of its own

/// Whether the line was one.
bool Reference::TakeDirective(const std::string& line, const std::string& place) {
  std::istringstream words(line);
  std::string begin, kind, name;
  words >> begin >> kind >> name;
  if (begin != "<!--" || !line.ends_with(" -->")) return false;
  if (kind == "text" && name.ends_with(':')) {
    const std::size_t value = line.find(name) + name.size() + 1;
    name.pop_back();
    texts_[name] = line.substr(value, line.size() - value - std::string_view(" -->").size());
  } else if (kind == "functions") {
    AddFunctions(Take(lists_.functions, name, place));
  } else if (kind == "words") {
    AddWords(Take(lists_.words, name, place));
  } else if (kind == "table") {
    AddTable(Take(lists_.words, name, place));
  } else if (kind == "instead") {
    AddHabits(Take(lists_.habits, name, place));
  } else {
    return false;
  }
  return true;
}

void Reference::AddFunctions(const ListSection& section) {
  for (const ListRow& row : section.rows) {
    const std::string& rule = row.columns[1];
    const Word word = WordOf(CalledFunction(rule, row.place), {row.place, row.columns[0], rule});
    const ORKBASE::RuleFunction& function = rules_.Function(word.Name());
    out_ += "#### " + AsCode(ToUtf8(function.name)) + "\n\n" + AsCode(ToUtf8(function.signature)) +
            "\n\n" + ToUtf8(function.info) + "\n\n";
    AddParameters(word);
    AddRule(word);
    AddSupport(function);
  }
}

void Reference::AddWords(const ListSection& section) {
  for (const ListRow& row : section.rows) {
    const Word word = WordOf(row.columns[0], {row.place, row.columns[1], row.columns[2]});
    out_ += "#### " + AsCode(ToUtf8(word.Name())) + "\n\n" + ToUtf8(word.explanation.text) + "\n\n";
    AddRule(word);
  }
}

void Reference::AddTable(const ListSection& section) {
  std::vector<Word> words;
  for (const ListRow& row : section.rows) {
    words.push_back(WordOf(row.columns[0], {row.place, row.columns[1], row.columns[2]}));
  }
  const bool isTyped = std::ranges::any_of(
      words, [](const Word& word) { return !word.explanation.dataType.empty(); });
  std::vector<std::string> head{Say("word"), Say("meaning"), Say("sql")};
  if (isTyped) head.insert(head.begin() + 1, Say("type"));
  AddTableHead(out_, head);
  for (const Word& word : words) {
    std::vector<std::string> cells{AsCodeCell(ToUtf8(word.Name())), ToUtf8(word.explanation.text),
                                   SqlCell(word.rule)};
    if (isTyped) {
      const std::string dataType = ToUtf8(word.explanation.dataType);
      cells.insert(cells.begin() + 1, dataType.empty() ? "" : Say(dataType));
    }
    AddTableRow(out_, cells);
  }
}

void Reference::AddHabits(const ListSection& section) {
  AddTableHead(out_, {Say("elsewhere"), Say("here")});
  for (const ListRow& row : section.rows) {
    const VerifiedRule rule = rules_.Example({row.place, row.columns[0], row.columns[2]});
    AddTableRow(out_, {AsCodeCell(row.columns[1]), AsCodeCell(ToUtf8(rule.text))});
  }
}

// --- words of the lists

Reference::Word Reference::WordOf(const std::string& word, const ReferenceRule& example) {
  Word made{example.type, rules_.Example(example), 0, {}};
  made.offset = rules_.OffsetOf(word, example, made.rule);
  made.explanation = rules_.ExplanationAt(made.rule, made.offset);
  return made;
}

void Reference::AddRule(const Word& word) {
  out_ += std::string(kFence) + "rule " + word.type + "\n" + ToUtf8(word.rule.text) + "\n";
  AddSql(word.rule);
  out_ += std::string(kFence) + "\n\n";
}

void Reference::AddParameters(const Word& word) {
  const std::vector<ORKBASE::RuleParameter> parameters =
      rules_.ParametersAt(word.rule, word.offset);
  const auto isTold = [](const ORKBASE::RuleParameter& one) { return !one.info.empty(); };
  if (parameters.size() < 2 && std::ranges::none_of(parameters, isTold)) return;
  for (const ORKBASE::RuleParameter& one : parameters) {
    const std::string label = AsCode(ToUtf8(one.label));
    const bool told = isTold(one);
    out_ += "- " + (told ? FilledText(Say("parameter"), {label, ToUtf8(one.info)}) : label) + "\n";
  }
  out_ += "\n";
}

/// What the application has to bring along for a function.
void Reference::AddSupport(const ORKBASE::RuleFunction& function) {
  NameGroups groups;
  for (const ORKBASE::RuleSupport& one : function.databases) {
    std::vector<std::string> needs;
    for (const std::u16string& need : one.needs) needs.push_back(AsCode(ToUtf8(need)));
    const std::string state = ToUtf8(one.state);
    if (state == "user") {
      groups.Add(FilledText(Say("user"), {JoinedTexts(needs, ", ")}), ToUtf8(one.dialect));
    }
    if (state == "bare") groups.Add(Say("bare"), ToUtf8(one.dialect));
  }
  for (const NameGroups::Group& group : groups.All()) {
    out_ += OnDatabases(group.second, group.first) + "\n\n";
  }
}

// --- SQL

/// What is so on some databases.
std::string Reference::OnDatabases(const std::vector<std::string>& names,
                                   const std::string& text) const {
  return FilledText(Say("databases"), {JoinedTexts(names, ", "), text});
}

std::string Reference::SqlOf(const Translation& translation) {
  if (!translation.refusal) return ToUtf8(translation.a);
  return FilledText(Say("refused"), {ToUtf8(translation.refusal->text)});
}

void Reference::AddSql(const VerifiedRule& rule) {
  const std::vector<Translation> made = rules_.TranslationsOf(rule, false);
  for (std::size_t i = 0; i < made.size(); ++i) {
    const std::string name = ToUtf8(ORKBASE::RuleDialects()[i].name);
    out_ += "  " + Padded(name, kDialectColumn) + SqlOf(made[i]) + "\n";
  }
}

void Reference::AddTwoTexts(const VerifiedRule& rule) {
  const Translation made = rules_.TranslationsOf(rule, true).front();
  out_ += "  " + Padded("where", kPartColumn) + SqlOf(made) + "\n";
  out_ += "  " + Padded("having", kPartColumn) + ToUtf8(made.b) + "\n";
}

/// One text for all databases that agree, with their names where not all do.
std::string Reference::SqlCell(const VerifiedRule& rule) {
  NameGroups groups;
  const std::vector<Translation> made = rules_.TranslationsOf(rule, false);
  for (std::size_t i = 0; i < made.size(); ++i) {
    const std::string sql = SqlOf(made[i]);
    groups.Add(made[i].refusal ? sql : AsCodeCell(sql), ToUtf8(ORKBASE::RuleDialects()[i].name));
  }
  if (groups.All().size() == 1) return groups.All().front().first;
  std::vector<std::string> lines;
  for (const NameGroups::Group& group : groups.All()) {
    lines.push_back(OnDatabases(group.second, group.first));
  }
  return JoinedTexts(lines, "<br>");
}

// --- blocks of rules

void Reference::OpenFence(const std::string& line) {
  std::istringstream words(line.substr(std::string_view(kFence).size()));
  isFenced_ = !isFenced_;
  fence_.clear();
  type_.clear();
  if (isFenced_) words >> fence_ >> type_;
  const FenceRow* const row = FenceNamed(type_.empty() ? "" : fence_);
  if (row == nullptr) fence_.clear();
  out_ += row == nullptr ? line + "\n" : kFence + std::string(row->shown) + ' ' + type_ + "\n";
}

void Reference::TakeFenced(const std::string& line, const std::string& place) {
  out_ += line + "\n";
  if (fence_.empty() || line.empty()) return;
  const ReferenceRule rule{place, type_, line};
  if (fence_ == "refused" || fence_ == "wrong") {
    const std::string reason = rules_.RefusalOf(rule);
    if (fence_ == "refused") out_ += "  " + reason + "\n";
    return;
  }
  const VerifiedRule verified = rules_.Verified(rule);
  if (fence_ == "sql") AddSql(verified);
  if (fence_ == "split") AddTwoTexts(verified);
}

// --- what the template has, and has not

const std::string& Reference::Say(const std::string& key) const {
  const auto found = texts_.find(key);
  if (found == texts_.end()) FailFill("text " + key, "the template has none of this name");
  return found->second;
}

const ListSection& Reference::Take(const std::vector<ListSection>& lists, const std::string& name,
                                   const std::string& place) {
  const auto found = std::ranges::find(lists, name, &ListSection::name);
  if (found == lists.end()) FailFill(place, "the list has no section " + name);
  taken_.insert(&*found);
  return *found;
}

void Reference::CheckAllTaken() const {
  for (const std::vector<ListSection>* list : {&lists_.functions, &lists_.words, &lists_.habits}) {
    for (const ListSection& section : *list) {
      if (!taken_.contains(&section)) FailFill("section " + section.name, "it stands nowhere");
    }
  }
}

}  // namespace ORKTOOL
