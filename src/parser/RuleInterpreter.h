// Interpreting the grammar over the words of a rule: backtracking, from left to right, with the
// first alternative that matches winning.
//
// Three things keep it quick without being seen. The result of a rule at a word position is
// remembered for one parse: a second attempt would report the same failures, and each of them is
// ignored the second time, because the furthest position can only have grown and the priority at it
// can only have fallen. What the word at hand cannot begin is passed over by a look at a table. And
// the attempts live on a stack of their own, so that nesting costs no stack of the thread.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "MxErrorRecord.h"
#include "MxRuleEnums.h"
#include "foundation/WordView.h"
#include "parser/CompiledGrammar.h"
#include "parser/ShapeTree.h"

namespace ORKBASE {

class NextWords;

/// Brackets, calls, minus signs and "not" that may be open at once.
inline constexpr std::int32_t kDeepestNesting = 1000;

/// Parses one list of words at a time; keeps its memory from one parse to the next.
class RuleInterpreter {
 public:
  /// On success stores the document. On failure leaves it and returns false; `error` tells why and
  /// `refused` the index of the word, that of the number of words where they ran out, -1 for none.
  /// The words need not outlive the call.
  bool ParseExpr(MXRULE_DATATYPE expected, std::span<const WordView> words,
                 std::u16string& document, MxErrorRecord& error, std::int32_t& refused);

  /// What may stand behind words with which a rule of a type begins, or a row of the grammar.
  /// Without a start rule nothing is reached.
  void FindNext(MXRULE_DATATYPE expected, std::span<const WordView> words, NextWords& next);
  void FindNextIn(std::int16_t row, std::span<const WordView> words, NextWords& next);

 private:
  /// A word position, the one behind the last word included.
  struct Place {
    const FirstAlternatives* begunByLiteral = nullptr;
    const FirstAlternatives* begunBySymbol = nullptr;
    std::int32_t symbol = kUnknownSymbol;
    std::int32_t dataType = kNoDataType;
    std::int32_t remembered = -1;  // the head of a list
    std::int16_t literal = kNoLiteral;
  };

  /// One attempt at a rule. A chain of operands begins as its operand does, which may be a chain
  /// itself, so one attempt serves them all: it starts at the innermost rule and, whenever that is
  /// matched, climbs to the chain that it is the first operand of.
  struct Attempt {
    const GrammarRule* rule;
    const GrammarRule* outermost;  // where it ends; for most attempts the rule itself
    const GrammarItem* item;       // the next of the sequence at work: of the group, if one is open
    const GrammarItem* group;      // the item of the alternative that is the open group, or null
    std::uint32_t alternative;
    std::int32_t opened;      // how many nestings this alternative holds open
    std::int32_t start;       // word position, and
    std::uint32_t nodes;      // nodes gathered, when the rule was entered
    std::int32_t groupStart;  // the same for this turn of the open group
    std::uint32_t groupNodes;
  };

  /// The failure to report: the furthest, and among equals the most specific, the first of those.
  struct Candidate {
    std::int32_t message = 0;
    std::int32_t priority = std::numeric_limits<std::int32_t>::max();
    std::int32_t expected = 0;  // type, kind of word or literal, as the message asks
  };

  struct Remembered {
    const GrammarRule* rule;
    ShapeIndex shape;
    std::int32_t end;  // -1: the rule fails here
    std::int32_t next;
  };

  void Reset(std::span<const WordView> words);
  bool Parse(std::int16_t startRule);
  bool Take(const GrammarItem& item, Attempt& attempt);
  bool TakeRule(std::int16_t index);
  bool TryGroup(Attempt& attempt, const GrammarItem& group);
  bool Begins(const GrammarItem& item, const GrammarRule& rule) const noexcept;
  std::uint8_t FirstAlternative(std::int16_t rule) const noexcept;
  bool TerminalCheck(const GrammarItem& item, const GrammarRule& rule) const noexcept;
  bool CanBegin(const GrammarItem& item, const GrammarRule& rule);
  void ReportFailure(const GrammarItem& item, const GrammarRule& rule);
  void ReportStart(std::int16_t rule);
  void PushErr(std::int32_t message, std::int32_t priority, std::int32_t expected);
  bool EndOfSequence();
  bool Succeed();
  bool Climb();
  const GrammarRule& ChainAbove(const Attempt& attempt, const GrammarRule& rule) const noexcept;
  bool Fail();
  bool FailInGroup(Attempt& attempt);
  bool NextAlternative(Attempt& attempt);
  void LeaveGroup(Attempt& attempt, const GrammarItem& group);
  void Deliver(ShapeIndex shape);
  bool Nest(const GrammarItem& item, Attempt& attempt);

  const Place& Here() const noexcept { return places_[static_cast<std::size_t>(position_)]; }
  const Remembered* Recall(const GrammarRule& rule) const noexcept;
  void Remember(const GrammarRule& rule, std::int32_t start, std::int32_t end, ShapeIndex shape);
  MxErrorRecord Report() const;

  const CompiledGrammar& grammar_ = CompiledGrammar::Instance();
  std::span<const WordView> words_;
  std::vector<Place> places_;
  std::vector<Attempt> attempts_;
  std::vector<ShapeIndex> nodes_;  // gathered by all open attempts, one behind the other
  std::vector<Remembered> memory_;
  ShapeTree shapes_;
  std::int32_t position_ = 0;
  std::int32_t furthest_ = 0;
  std::int32_t nesting_ = 0;
  bool tooDeep_ = false;
  NextWords* next_ = nullptr;  // sees what is tried behind the last word; null for a plain parse
  Candidate candidate_;
};

}  // namespace ORKBASE
