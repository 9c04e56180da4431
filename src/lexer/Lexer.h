// The lexer behind `MxLexicalAnalyzer` and `MxExpression`: words by reference instead of copies.
#pragma once

#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

#include "MxErrorRecord.h"
#include "foundation/WordView.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

class MxDictionarys;

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
  void PrepareRecognition(Language language);
  Recognised Recognise(std::u16string_view token) const;

  /// Appends a word for each token of the rule that is not blank. The words refer to `text`, to the
  /// dictionaries and to `composed`, which must all outlive them.
  void ReadWords(std::u16string_view text, Language language, std::vector<WordView>& words,
                 std::forward_list<std::u16string>& composed);

  /// Decides a word for good; see `MxLexicalAnalyzer::VerifyToken`. Where it is refused, `error`
  /// tells why, but not where: the words know no rule text. A refusal with the number 0 has no
  /// text.
  bool VerifyToken(WordView& word, MxErrorRecord& error) const;

 private:
  bool VerifyDataTypePostfix(WordView& word, MxErrorRecord& error) const;
  bool VerifyDataTablePostfix(const WordView& word) const;
  bool VerifyConstant(WordView& word, MxErrorRecord& error) const;
  void VerifyDataField(WordView& word, MxErrorRecord& error) const;
  const MxWord* Find(std::u16string_view key) const;

  std::u16string currentRecordPrefix_;
};

/// The word of a token that no dictionary knows.
WordView UnknownWord(std::u16string_view token) noexcept;

}  // namespace ORKBASE
