// Rules made by walking the rows of the grammar, for tests that want many rules of every kind:
//
//   RuleGenerator rules(7);                                 // a seed: the same rules each time
//   GeneratedRule any = rules.Make(kLogicDataType, 6);      // bounded depth, words of
//   SampleWords() GeneratedRule hour = rules.MakeThrough(u"<func_hour>", 4);
//
// Every rule that is made is a valid one: where the grammar's first match would stop too early
// (a text chain that begins with a word of any type), the walk begins the chain with a plain text.
#pragma once

#include "MxRuleEnums.h"
#include "MxWord.h"
#include "RuleWords.h"

#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

struct GeneratedRule {
  ORKBASE::MXRULE_DATATYPE type = ORKBASE::kNoDataType;  ///< what it is an expression of
  std::vector<ORKBASE::MxWord> words;                    ///< for a parser without a lexer
  std::u16string text;                                   ///< blanks here and there
};

/// Makes rules, the same ones for the same seed and words.
class RuleGenerator {
 public:
  explicit RuleGenerator(std::uint32_t seed);
  RuleGenerator(std::uint32_t seed, std::vector<RuleWord> words);

  /// A rule of so many words is brought to its end the shortest way.
  std::size_t manyWords = 40;

  /// Never walks into this row (such as u"<func_set>") nor into what needs it.
  void Avoid(std::u16string_view row);

  /// A rule of a type that has a start rule; below `depth` rows, and behind
  /// `manyWords` words, only the shortest ways are taken.
  GeneratedRule Make(ORKBASE::MXRULE_DATATYPE type, int depth);
  /// A rule, of whatever type is nearest, whose walk enters this row. Empty for a row to which no
  /// start rule leads.
  GeneratedRule MakeThrough(std::u16string_view row, int depth);

  /// The names of all rows of the grammar, sorted.
  std::vector<std::u16string_view> Rows() const;
  /// The rows that all walks so far have entered.
  const std::set<std::u16string_view>& Reached() const { return reached_; }

  /// Uniform in 0 ... bound - 1.
  std::size_t Pick(std::size_t bound);
  std::mt19937& engine() { return engine_; }

 private:
  struct Row;
  using Items = std::vector<std::u16string_view>;

  void Measure();
  int CostOfItem(const Row& row, std::u16string_view item) const;
  int CostOfItems(const Row& row, const Items& items) const;
  std::vector<const RuleWord*> WordsFor(const Row& row, std::u16string_view terminal,
                                        bool exactType) const;
  std::map<std::u16string_view, int> DistancesTo(std::u16string_view target) const;
  bool LeadsOn(std::u16string_view item, int distance) const;

  void Walk(std::u16string_view row, int depth, bool definite, bool guided);
  void WalkItems(const Row& row, const Items& items, int depth, bool definite, bool guided);
  void WalkItem(const Row& row, std::u16string_view item, int depth, bool definite, bool guided);
  std::size_t ChooseAlternative(const Row& row, int depth, bool definite, bool guided);
  GeneratedRule Finish(ORKBASE::MXRULE_DATATYPE type);

  struct Row {
    std::u16string_view name;
    std::vector<Items> alternatives;
    std::int32_t dataType = 0;
    bool checkDataType = false;
    bool avoided = false;
    int cost = 0;
  };

  std::map<std::u16string_view, Row> rows_;
  std::vector<RuleWord> words_;
  std::mt19937 engine_;
  std::set<std::u16string_view> reached_;
  using Distances = std::map<std::u16string_view, int>;
  Distances distances_;  // to the row that the walk is to enter
  std::map<std::u16string_view, Distances> distanceTables_;
  std::vector<ORKBASE::MxWord> made_;
};
