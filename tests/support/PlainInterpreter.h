// The rule interpreter in its plainest form, for tests to hold the quick one against: it walks the
// grammar's texts at each attempt, remembers no result, and builds real XML elements whose
// attributes it sets in place. It takes exponential time for nested `switch`.
#pragma once

#include "MxRuleEnums.h"
#include "MxWord.h"
#include "xml/XmlDoc.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class PlainInterpreter {
 public:
  PlainInterpreter();

  /// As `MxParser::ParseExpr`. Throws `TooLong` when it takes more than `attemptLimit` attempts.
  bool ParseExpr(ORKBASE::MXRULE_DATATYPE expected, const std::vector<ORKBASE::MxWord>* words,
                 std::u16string& document);

  std::int32_t ErrNumber() const { return errNumber_; }
  const std::u16string& ErrDescription() const { return errDescription_; }

  struct TooLong {};
  std::size_t attemptLimit = 8'000;
  /// Of the last parse: whether an attempt matched all words, or the words are a whole rule; and
  /// whether an attempt behind the last of them would have taken a word.
  bool ReachedEnd() const { return isWhole_ || !triedAtEnd_.empty(); }
  bool TakesAtEnd(const ORKBASE::MxWord& word) const;

  /// Names of the rules that ever matched.
  std::set<std::u16string> matched;

 private:
  struct Rule {
    std::u16string body;
    std::int32_t dataType;
    std::int32_t semanticType;
    bool checkDataType;
  };
  struct ErrorRecord {
    std::int32_t code;
    std::int32_t message;
    std::int32_t priority;
    std::u16string word;
    std::u16string expected;
  };
  /// One word of a row that was asked for behind the last word.
  struct TriedAtEnd {
    std::u16string item;
    bool check;
    std::int32_t dataType;
    friend auto operator<=>(const TriedAtEnd&, const TriedAtEnd&) = default;
  };
  using Nodes = std::vector<ORKBASE::MxXmlNode>;

  bool Parse(const std::u16string& name, ORKBASE::MxXmlNode& out);
  bool SyntaxCheck(const std::u16string& body, Nodes& out, bool check, std::int32_t dataType,
                   bool optional);
  bool SequenceCheck(const std::u16string& body, Nodes& out, bool check, std::int32_t dataType);
  bool TerminalCheck(const std::u16string& item, bool check, std::int32_t dataType,
                     bool& symbolMatched, ORKBASE::MxXmlNode& out);
  void PushErr(ErrorRecord record);

  void MxWordToXml(const ORKBASE::MxWord& word, ORKBASE::MxXmlNode& out);
  void ComposeToTree(const Nodes& nodes, std::int32_t semanticType, ORKBASE::MxXmlNode& out);
  void Raise(std::int32_t number, std::u16string description);

  std::map<std::u16string, Rule> rules_;
  std::map<std::int32_t, std::u16string> startRules_;
  std::map<std::u16string, std::int32_t> terminalSymbols_;

  ORKBASE::MxXmlDoc doc_;
  const std::vector<ORKBASE::MxWord>* words_ = nullptr;
  std::int32_t position_ = 0;
  std::vector<ErrorRecord> candidates_;
  std::int32_t furthest_ = 0;
  std::size_t attempts_ = 0;
  std::set<TriedAtEnd> triedAtEnd_;
  bool isWhole_ = false;
  std::int32_t errNumber_ = 0;
  std::u16string errDescription_;
};

/// The items of a rule body, by the plain state machine; cut once for each text.
const std::vector<std::u16string>& PlainItems(const std::u16string& body);
