// The lexer behind `MxLexicalAnalyzer` and `MxExpression`: words by reference instead of copies.
#pragma once

#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "MxRuleEnums.h"
#include "foundation/WordView.h"

namespace ORKBASE {

class MxDictionarys;

/// What a token is refused with. Message 0 is a refusal without a text of its own.
struct LexicalError {
  bool refused = false;
  std::int32_t message = 0;
};

/// Recognises and verifies words. Refers to a dictionary set that it does not own, or to none. Used
/// by one thread at a time.
class Lexer {
 public:
  MxDictionarys* dictionarys = nullptr;
  bool thiscaseVarOn1RcId = true;

  /// A dictionary word with what the token carries behind it, or no word.
  struct Recognised {
    const MxWord* word = nullptr;
    std::u16string_view postfix;
  };

  /// Reads what `Recognise` needs from the messages; to be called before a run of tokens.
  void PrepareRecognition();
  Recognised Recognise(std::u16string_view token) const;

  /// Appends a word for each token of the rule that is not blank. The words refer to `text`, to the
  /// dictionaries and to `composed`, which must all outlive them.
  void ReadWords(std::u16string_view text, std::vector<WordView>& words,
                 std::forward_list<std::u16string>& composed);

  /// Decides a word for good; see `MxLexicalAnalyzer::VerifyToken`.
  LexicalError VerifyToken(WordView& word) const;

 private:
  LexicalError VerifyDataTypePostfix(WordView& word) const;
  LexicalError VerifyDataTablePostfix(const WordView& word) const;
  LexicalError VerifyConstant(WordView& word) const;
  void VerifyDataField(WordView& word) const;
  const MxWord* Find(std::u16string_view key) const;

  std::u16string currentRecordPrefix_;
};

/// The word of a token that no dictionary knows.
WordView UnknownWord(std::u16string_view token) noexcept;

}  // namespace ORKBASE
