// The lexer behind `MxLexicalAnalyzer` and `MxExpression`: words by reference instead of copies.
#pragma once

#include <array>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "MxErrorRecord.h"
#include "foundation/RenameList.h"
#include "foundation/Text.h"
#include "foundation/WordSource.h"
#include "foundation/WordView.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Whether every data table has the column without listing it: RCID and the like, in any case. A
/// rule that names one before its table is loaded has it as it was typed and of any type, also
/// where the table does list it.
bool IsPseudoColumn(std::u16string_view field);

/// Recognises and verifies words. Refers to a source of words that it does not own, or to none.
/// Used by one thread at a time.
class Lexer {
 public:
  WordSource* source = nullptr;
  bool thiscaseVarOn1RcId = true;
  NameQuotes quotes;  ///< of names inside rule texts

  /// What a token is: blanks, a dictionary word with what the token carries behind it, or no word.
  struct Recognised {
    const MxWord* word = nullptr;
    std::u16string_view postfix;
    bool isBlank = false;
  };

  /// Calls `use(token, recognised)` for each token, in order. An empty token counts as a blank one.
  template <class Range, class Use>
  void RecogniseEach(const Range& tokens, Language language, Use use);

  /// Appends a word for each token of the rule that is not blank. The words refer to `text`, to the
  /// source and to `composed`, which must all outlive them.
  void ReadWords(std::u16string_view text, Language language, std::vector<WordView>& words,
                 std::forward_list<std::u16string>& composed);

  /// Decides a word for good; see `MxLexicalAnalyzer::VerifyToken`. Where it is refused, `error`
  /// tells why, but not where: the words know no rule text. A refusal with the number 0 has no
  /// text.
  bool VerifyToken(WordView& word, MxErrorRecord& error) const {
    const bool isSettled = word.symbol != kUnknownSymbol && word.postfixCheck == kNoPostfix;
    return isSettled || Settle(word, error);
  }

  /// The rule text with new names; see `MxLexicalAnalyzer::ChangeExpWithNewDtDfNames`. Where it
  /// would become too long, false with the error, and `out` is the text as it was.
  bool ChangeNames(ORKDB_DSType_ENUM dsType, std::u16string_view tableRenames,
                   std::u16string_view fieldRenames, std::u16string_view expression,
                   std::u16string& out, MxErrorRecord& error);

 private:
  /// Words of one character that were found already: brackets, operators, digits. Cleared for
  /// every text, so no larger than it has to be.
  using Characters = std::array<const MxWord*, 64>;

  /// Reads what `Recognise` needs from the messages.
  void PrepareRecognition(Language language);
  Recognised Recognise(std::u16string_view token) const;
  Recognised RecogniseKnown(std::u16string_view token, Characters& characters) const;
  const MxWord* Find(std::u16string_view key) const;

  /// Decides a word with a postfix, or one that no dictionary knows.
  bool Settle(WordView& word, MxErrorRecord& error) const;
  bool VerifyDataTypePostfix(WordView& word, MxErrorRecord& error) const;
  bool VerifyDataTablePostfix(const WordView& word) const;
  bool VerifyConstant(WordView& word, MxErrorRecord& error) const;
  void VerifyDataField(WordView& word, MxErrorRecord& error) const;

  std::u16string currentRecordPrefix_;
};

template <class Range, class Use>
void Lexer::RecogniseEach(const Range& tokens, Language language, Use use) {
  PrepareRecognition(language);
  Characters characters{};
  for (const std::u16string_view token : tokens) {
    use(token,
        IsBlankText(token) ? Recognised{nullptr, {}, true} : RecogniseKnown(token, characters));
  }
}

}  // namespace ORKBASE
