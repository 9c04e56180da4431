// What people and editors call a word and its type, and the sentence that says what it does.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "MxRuleEnums.h"
#include "MxWord.h"
#include "foundation/MessageNumbers.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Of an item of a list or an explained word: field, formField, function, operator, variable,
/// parameter, bracket, part, constant, unknown.
std::u16string_view ItemKindOf(std::int32_t symbol) noexcept;
/// Of a word that a rule depends on; empty for one that counts as none (an operator, a bracket, a
/// date part, a constant).
std::u16string_view UseKindOf(std::int32_t symbol) noexcept;
/// The fixed name of a value type: number, text, date, logic, any, picture, link; empty for none.
std::u16string_view TypeNameOf(std::int32_t dataType) noexcept;
/// "a number", "a text", ... within a sentence: the number of the message.
MessageNumber PhraseOf(std::int32_t dataType) noexcept;

/// What a word of the vocabulary does, by its canonical spelling in any case; 0 for other words.
/// That of a function's parameters is the number behind it.
std::int32_t InfoNumberOf(std::u16string_view primary);
/// One sentence for people; empty for a word that has none, such as a field.
std::u16string InfoOf(std::u16string_view primary, Language language);

}  // namespace ORKBASE
