// Walking the grammar.
#include "RuleGenerator.h"

#include "foundation/Text.h"
#include "parser/CompiledGrammar.h"
#include "parser/SyntaxRules.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

using namespace ORKBASE;

namespace {

constexpr int kImpossible = 1'000'000;

/// Rows in which an earlier alternative would take the first word of a text chain for a whole
/// value if that word is of any type.
bool NeedsDefiniteText(std::u16string_view row) {
  return row == u"<expr_var>" || row == u"<ToText_1param>" || row == u"<expr_comp>";
}

bool IsGroup(std::u16string_view item) {
  return item.front() == u'{' || item.front() == u'[';
}

std::u16string_view Inner(std::u16string_view group) {
  return group.substr(1, group.size() - 2);
}

std::int32_t TerminalOf(std::u16string_view item) {
  for (const TerminalSymbol& terminal : kTerminalSymbols) {
    if (terminal.name == item) return terminal.symbol;
  }
  return kUnknownSymbol;
}

bool IsDelimiter(const MxWord& word) {
  const char16_t first = word.primary.front();
  return std::u16string_view(u"(),+-/*=><&%^").find(first) != std::u16string_view::npos;
}

}  // namespace

RuleGenerator::RuleGenerator(std::uint32_t seed)
    : RuleGenerator(seed, {SampleWords().begin(), SampleWords().end()}) {}

RuleGenerator::RuleGenerator(std::uint32_t seed, std::vector<RuleWord> words)
    : words_(std::move(words)), engine_(seed) {
  for (const SyntaxRule& rule : kSyntaxRules) {
    Row row{rule.name, {}, rule.dataType, rule.checkDataType, false, 0};
    for (const std::u16string_view alternative : SplitText(rule.body, u"|")) {
      row.alternatives.push_back(CutIntoItems(alternative));
    }
    rows_.emplace(rule.name, std::move(row));
  }
  Measure();
}

void RuleGenerator::Avoid(std::u16string_view row) {
  rows_.at(row).avoided = true;
  Measure();
}

std::vector<std::u16string_view> RuleGenerator::Rows() const {
  std::vector<std::u16string_view> names;
  for (const auto& [name, row] : rows_) names.push_back(name);
  return names;
}

std::size_t RuleGenerator::Pick(std::size_t bound) {
  return bound < 2 ? 0 : static_cast<std::size_t>(engine_()) % bound;
}

std::vector<const RuleWord*> RuleGenerator::WordsFor(const Row& row, std::u16string_view terminal,
                                                     bool exactType) const {
  const std::int32_t symbol = TerminalOf(terminal);
  std::vector<const RuleWord*> fitting;
  for (const RuleWord& word : words_) {
    if (word.symbol != symbol) continue;
    const bool fits =
        word.dataType == row.dataType || (word.dataType == kVarDataType && !exactType);
    if (fits || !row.checkDataType) fitting.push_back(&word);
  }
  return fitting;
}

/// How many rows the shortest walk through an item takes.
int RuleGenerator::CostOfItem(const Row& row, std::u16string_view item) const {
  if (IsGroup(item)) return 0;
  if (const auto rule = rows_.find(item); rule != rows_.end()) return rule->second.cost;
  if (TerminalOf(item) == kUnknownSymbol) return 0;
  return WordsFor(row, item, false).empty() ? kImpossible : 0;
}

int RuleGenerator::CostOfItems(const Row& row, const Items& items) const {
  int most = 0;
  for (const std::u16string_view item : items) most = std::max(most, CostOfItem(row, item));
  return most;
}

void RuleGenerator::Measure() {
  distanceTables_.clear();
  for (auto& [name, row] : rows_) row.cost = kImpossible;
  for (bool changed = true; changed;) {
    changed = false;
    for (auto& [name, row] : rows_) {
      if (row.avoided) continue;
      for (const Items& items : row.alternatives) {
        const int cost = CostOfItems(row, items) + 1;
        if (cost >= row.cost) continue;
        row.cost = cost;
        changed = true;
      }
    }
  }
}

/// From each row, over how many rows the target is reached; rows without a way are missing.
std::map<std::u16string_view, int> RuleGenerator::DistancesTo(std::u16string_view target) const {
  std::map<std::u16string_view, int> distances{{target, 0}};
  const auto reach = [&](const Row& row, std::u16string_view item) {
    const auto next = distances.find(item);
    if (next == distances.end()) return false;
    const auto known = distances.find(row.name);
    if (known != distances.end() && known->second <= next->second + 1) return false;
    distances[row.name] = next->second + 1;
    return true;
  };
  for (bool changed = true; changed;) {
    changed = false;
    for (const auto& [name, row] : rows_) {
      if (row.cost >= kImpossible) continue;
      for (const Items& items : row.alternatives) {
        if (CostOfItems(row, items) >= kImpossible) continue;
        for (const std::u16string_view item : items) {
          if (!IsGroup(item)) {
            changed |= reach(row, item);
          } else {
            for (const std::u16string_view inner : CutIntoItems(Inner(item))) {
              changed |= reach(row, inner);
            }
          }
        }
      }
    }
  }
  return distances;
}

/// Whether the item, or one in the group that it is, is nearer to the target than `distance`.
bool RuleGenerator::LeadsOn(std::u16string_view item, int distance) const {
  if (IsGroup(item)) {
    const Items inner = CutIntoItems(Inner(item));
    return std::any_of(inner.begin(), inner.end(),
                       [&](std::u16string_view each) { return LeadsOn(each, distance); });
  }
  const auto found = distances_.find(item);
  return found != distances_.end() && found->second < distance;
}

std::size_t RuleGenerator::ChooseAlternative(const Row& row, int depth, bool definite,
                                             bool guided) {
  std::vector<std::size_t> possible;
  int least = kImpossible;
  for (std::size_t i = 0; i < row.alternatives.size(); ++i) {
    const Items& items = row.alternatives[i];
    const int cost = CostOfItems(row, items);
    if (cost >= kImpossible) continue;
    if (guided) {
      const int distance = distances_.at(row.name);
      const bool leads = std::any_of(items.begin(), items.end(), [&](std::u16string_view item) {
        return LeadsOn(item, distance);
      });
      if (leads) return i;
      continue;
    }
    if (definite && row.name == u"<term_str>" && i > 0) continue;
    if (definite && row.name == u"<constant_variant_str>" &&
        WordsFor(row, items.front(), true).empty()) {
      continue;
    }
    if (depth <= 0 && cost > least) continue;
    if (depth <= 0 && cost < least) possible.clear();
    least = std::min(least, cost);
    possible.push_back(i);
  }
  if (possible.empty()) throw std::logic_error("no way through the grammar");
  return possible[Pick(possible.size())];
}

void RuleGenerator::Walk(std::u16string_view name, int depth, bool definite, bool guided) {
  const Row& row = rows_.at(name);
  reached_.insert(row.name);
  if (made_.size() >= manyWords) depth = 0;
  const bool arrived = guided && distances_.at(name) == 0;
  const bool onTheWay = guided && !arrived;
  const std::size_t chosen = ChooseAlternative(row, depth, definite, onTheWay);
  WalkItems(row, row.alternatives[chosen], depth, definite, onTheWay);
}

void RuleGenerator::WalkItems(const Row& row, const Items& items, int depth, bool definite,
                              bool guided) {
  const int distance = guided ? distances_.at(row.name) : 0;
  const auto guide = std::find_if(items.begin(), items.end(), [&](std::u16string_view item) {
    return guided && LeadsOn(item, distance);
  });
  std::vector<std::size_t> turns(items.size(), 1);
  bool chain = false;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (!IsGroup(items[i])) continue;
    const bool leads = guide == items.begin() + static_cast<std::ptrdiff_t>(i);
    const bool possible = CostOfItems(row, CutIntoItems(Inner(items[i]))) < kImpossible;
    const bool free = possible && depth > 0 && !(definite && guided);
    turns[i] = leads ? 1 : !free ? 0 : items[i].front() == u'[' ? Pick(2) : Pick(5) / 2;
    chain = chain || turns[i] > 0;
  }
  // Only the first word of a chain must be a plain text; a term alone may be anything.
  const bool isTerm = row.name == u"<term_str>" || row.name == u"<constant_variant_str>";
  for (std::size_t i = 0; i < items.size(); ++i) {
    const bool leads = guide == items.begin() + static_cast<std::ptrdiff_t>(i);
    const bool first = i == 0 && definite && (chain || isTerm);
    for (std::size_t turn = 0; turn < turns[i]; ++turn) {
      WalkItem(row, items[i], depth, first || NeedsDefiniteText(row.name), leads);
    }
  }
}

void RuleGenerator::WalkItem(const Row& row, std::u16string_view item, int depth, bool definite,
                             bool guided) {
  if (IsGroup(item)) {
    const Items inner = CutIntoItems(Inner(item));
    bool leads = guided;
    for (const std::u16string_view each : inner) {
      const bool here = leads && LeadsOn(each, distances_.at(row.name));
      WalkItem(row, each, depth, false, here);
      leads = leads && !here;
    }
  } else if (rows_.contains(item)) {
    Walk(item, depth - 1, definite, guided);
  } else if (TerminalOf(item) != kUnknownSymbol) {
    const auto fitting = WordsFor(row, item, definite);
    const RuleWord& word = *fitting[Pick(fitting.size())];
    made_.push_back(MakeRuleWord(word.text, word.symbol, word.dataType));
  } else {
    made_.push_back(VocabularyWord(item));
  }
}

GeneratedRule RuleGenerator::Finish(MXRULE_DATATYPE type) {
  GeneratedRule rule;
  rule.type = type;
  rule.words = std::exchange(made_, {});
  for (std::size_t i = 0; i < rule.words.size(); ++i) {
    const bool tight = i == 0 || IsDelimiter(rule.words[i]) || IsDelimiter(rule.words[i - 1]);
    if (i > 0 && (!tight || Pick(3) == 0)) rule.text.append(1 + Pick(8) / 7, u' ');
    rule.text += rule.words[i].primary;
  }
  return rule;
}

GeneratedRule RuleGenerator::Make(MXRULE_DATATYPE type, int depth) {
  for (const StartRule& start : kStartRules) {
    if (start.dataType != type) continue;
    Walk(start.name, depth, type == kStrDataType, false);
    return Finish(type);
  }
  throw std::logic_error("a type without a start rule");
}

GeneratedRule RuleGenerator::MakeThrough(std::u16string_view row, int depth) {
  const auto known = distanceTables_.find(row);
  distances_ = known != distanceTables_.end() ? known->second : DistancesTo(row);
  distanceTables_[row] = distances_;
  const StartRule* nearest = nullptr;
  for (const StartRule& start : kStartRules) {
    if (!distances_.contains(start.name)) continue;
    if (nearest && distances_.at(nearest->name) <= distances_.at(start.name)) continue;
    nearest = &start;
  }
  if (!nearest) return {};
  Walk(nearest->name, depth, nearest->dataType == kStrDataType, true);
  return Finish(nearest->dataType);
}
