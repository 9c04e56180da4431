// Words for tests that need no lexer and no dictionary: those of the sample database with the
// symbol and type that loading gives them, and those of the base vocabulary.
#pragma once

#include "MxWord.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A word that can stand for a kind of word in the grammar.
struct RuleWord {
  std::u16string_view text;  ///< canonical text, display form and spelling in one
  std::int32_t symbol;
  std::int32_t dataType;
};

/// Constants, fields of Orders, Customer and T, parameters and system variables: words that an
/// engine knows once `SetDts(u"Orders,Customer,T")` is done on the sample database.
std::span<const RuleWord> SampleWords();
/// Fields of report template 7, known after `SetRt(u"7")`.
std::span<const RuleWord> FormWords();
/// Enumeration values, known after `SetCAXDD(1, kCaxWordsDocument)`.
std::span<const RuleWord> CaxWords();
extern const char16_t* const kCaxWordsDocument;
/// The three lists in one.
std::vector<RuleWord> AllRuleWords();

/// A word as the lexer would hand it on, with `text` as primary, display form and content; the
/// display form of what follows a prefix word ("Input.") is the prefix word.
ORKBASE::MxWord MakeRuleWord(std::u16string_view text, std::int32_t symbol, std::int32_t dataType);
/// The word of the base vocabulary with this canonical text, in any case; symbol -1 if none.
ORKBASE::MxWord VocabularyWord(std::u16string_view text);
/// Every single word of the base vocabulary, prefix words ("Input.") left out.
std::vector<ORKBASE::MxWord> WholeVocabulary();

/// The words of a rule text (blanks between them where the tokeniser needs them): known ones with
/// their symbol and type, else constants, a quoted text that begins with four digits being a date.
/// Throws for any other word, so that no test asserts on a misspelling.
std::vector<ORKBASE::MxWord> WordsOf(const std::u16string& text);
