// From rule text to words, and renaming inside rule text.
//
//   MxLexicalAnalyzer lexer;
//   std::vector<std::u16string> tokens;
//   lexer.GenerateOriginalTokens(u"T.a >= 1", tokens);   // "T.a", " ", ">=", " ", "1"
//   lexer.Compose(tokens);                               // the text again
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "MxErrorState.h"
#include "MxRuleEnums.h"
#include "MxWord.h"
#include "OrkExport.h"

namespace ORKBASE {

class MxDictionarys;

/// Cuts a rule into tokens, recognises and verifies its words, and renames tables and fields in its
/// text. A value class, used by one thread at a time. It refers to a dictionary set that it does
/// not own; with none set it finds no word and loads no table. All texts are UTF-16.
class ORKRULE_EXPORT MxLexicalAnalyzer : public MxErrorState {
 public:
  MxLexicalAnalyzer();
  MxLexicalAnalyzer(const MxLexicalAnalyzer& other);
  MxLexicalAnalyzer& operator=(const MxLexicalAnalyzer& other);
  ~MxLexicalAnalyzer();

  /// Appends the pieces of `text` to `tokens`. Joined they give `text` back exactly; blanks are
  /// tokens of their own. Never fails: an unclosed text constant runs to the end.
  void GenerateOriginalTokens(const std::u16string& text, std::vector<std::u16string>& tokens);

  /// Looks each token up by display form. Appends the canonical spelling of each token to
  /// `primaries`, and a word for each token that is not blank to `words`; a token that no
  /// dictionary knows becomes a word with symbol -1.
  void GeneratePrimaryTokens(const std::vector<std::u16string>& originals,
                             std::vector<std::u16string>& primaries, std::vector<MxWord>& words);

  /// The tokens one behind the other.
  std::u16string Compose(const std::vector<std::u16string>& tokens) const;

  /// Decides each word for good, in order, and stops at the first bad one: false, with number -1
  /// and a text that quotes the word's `content`. The words before it keep what was decided.
  bool LexicalCheck(std::vector<MxWord>& words);

  /// Decides one word: checks its postfix, recognises a constant, or loads the data table that the
  /// word names. A field that was loaded here replaces the whole word, `content` included.
  bool VerifyToken(MxWord& word);

  /// Renames tables (`old:new,old:new`) and fields (`table.old:new`, naming the table by its new
  /// name) in `expression`, token by token, and leaves the rest as it was written. Needs no
  /// dictionary. A database type other than 0 makes `"name"` the quoted form instead of `[name]`,
  /// also for later calls. New names that make the text longer than 1,000,000 units (and longer
  /// than it was) change nothing: `out` is `expression`, with number -1 and a text. The error is
  /// not reset.
  void ChangeExpWithNewDtDfNames(ORKDB_DSType_ENUM dsType, const std::u16string& tableRenames,
                                 const std::u16string& fieldRenames,
                                 const std::u16string& expression, std::u16string& out);

  void set_dictionarys(MxDictionarys* dictionarys);

  /// When false, the word that stands before a field of the current record is taken off before a
  /// token is looked up.
  bool get_thiscaseVarOn1RcId() const;
  void set_thiscaseVarOn1RcId(bool value);

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKBASE
