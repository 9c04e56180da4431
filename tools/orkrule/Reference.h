// The reference of the rule language: prose out of a template, and in it the tables, the rules and
// their SQL as the library gives them, so that no document says what the engine does not do.
//
// What a template may hold beside Markdown:
//
//   <!-- text needs: It calls %s. -->   what the tables say, by name; `%s` is filled in
//   <!-- functions numbers -->          each function of a section of the list, with signature and
//   SQL
//   <!-- words operators -->            each word of a section of the list, with a rule and its SQL
//   <!-- table variables -->            a section of the list as a table
//   <!-- instead sql -->                a section of habits as a table: the other way, and ours
//   ```rule logic                       lines that are rules of this type
//   ```sql logic                        the same, with the SQL of each database
//   ```split logic                      the same, with the two texts of the default dialect
//   ```refused logic                    lines that are refused, with the reason
//   ```wrong logic                      the same without it
#pragma once

#include "ListFile.h"
#include "ReferenceRules.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace ORKTOOL {

/// The lists of examples, all in English words.
struct ReferenceLists {
  std::vector<ListSection> functions;  ///< type, rule
  std::vector<ListSection> words;      ///< word, type, rule
  std::vector<ListSection> habits;     ///< type, how others write it, rule
};

class Reference {
 public:
  Reference(ReferenceRules& rules, const ReferenceLists& lists) : rules_(rules), lists_(lists) {}

  /// Fills a template; `name` tells the place of what is wrong with it. Throws `Failure` for a rule
  /// that does not do what the template says, and for a section that stands nowhere.
  std::string Fill(const std::string& text, const std::string& name);

 private:
  struct Word;

  void TakeLine(const std::string& line, const std::string& place);
  bool TakeDirective(const std::string& line, const std::string& place);
  void OpenFence(const std::string& line);
  void TakeFenced(const std::string& line, const std::string& place);

  void AddFunctions(const ListSection& section);
  void AddWords(const ListSection& section);
  void AddTable(const ListSection& section);
  void AddHabits(const ListSection& section);

  Word WordOf(const std::string& word, const ReferenceRule& example);
  void AddRule(const Word& word);
  void AddParameters(const Word& word);
  void AddSupport(const ORKBASE::RuleFunction& function);
  void AddSql(const VerifiedRule& rule);
  void AddTwoTexts(const VerifiedRule& rule);
  std::string OnDatabases(const std::vector<std::string>& names, const std::string& text) const;
  std::string SqlCell(const VerifiedRule& rule);
  std::string SqlOf(const Translation& translation);

  const std::string& Say(const std::string& key) const;
  const ListSection& Take(const std::vector<ListSection>& lists, const std::string& name,
                          const std::string& place);
  void CheckAllTaken() const;

  ReferenceRules& rules_;
  const ReferenceLists& lists_;
  std::map<std::string, std::string> texts_;
  std::set<const ListSection*> taken_;
  std::string fence_;  ///< kind of the block, empty outside of blocks and in plain ones
  std::string type_;   ///< of the rules in the block
  bool isFenced_ = false;
  std::string out_;
};

}  // namespace ORKTOOL
