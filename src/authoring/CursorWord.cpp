// Tokens around a place.
#include "authoring/CursorWord.h"

#include "foundation/Text.h"
#include "lexer/Tokeniser.h"

#include <algorithm>
#include <string>

namespace ORKBASE {
namespace {

/// Inner quotes are doubled, so a text with its closing quote has an even number of them.
bool IsOpenText(std::u16string_view token) noexcept {
  return std::count(token.begin(), token.end(), u'\'') % 2 != 0;
}

/// What the tokens around a place are.
struct Neighbours {
  std::u16string_view behind;  ///< begins in front of the place and reaches it
  std::u16string_view before;  ///< the one in front of that
  std::u16string_view next;    ///< begins at the place
};

Neighbours NeighboursOf(std::u16string_view text, std::size_t place) noexcept {
  Neighbours around;
  std::size_t begin = 0;
  for (const std::u16string_view token : Tokens(text)) {
    if (begin >= place) {
      if (begin == place) around.next = token;
      break;
    }
    around.before = around.behind;
    around.behind = token;
    begin += token.size();
  }
  return around;
}

bool IsWord(std::u16string_view token) noexcept {
  return !token.empty() && !IsDelimiter(token.front());
}

}  // namespace

CursorWord WordAtCursor(std::u16string_view text, std::int32_t offset) noexcept {
  const auto place = static_cast<std::size_t>(offset);
  const Neighbours around = NeighboursOf(text, place);
  CursorWord word;
  if (!IsWord(around.behind)) {
    word.begin = place;
    word.end = place + (IsWord(around.next) ? around.next.size() : 0);
    // In the middle of an operator only what stands left of the cursor counts.
    if (!around.behind.empty()) {
      word.before = text.substr(static_cast<std::size_t>(around.behind.data() - text.data()));
      word.before = word.before.substr(0, place - (text.size() - word.before.size()));
    }
  } else {
    word.begin = static_cast<std::size_t>(around.behind.data() - text.data());
    word.end = word.begin + around.behind.size();
    word.typed = text.substr(word.begin, place - word.begin);
    word.before = around.before;
    const char16_t first = word.typed.front();
    word.isTextConstant = first == u'\'' && (place < word.end || IsOpenText(around.behind));
    word.mayBeNumber = first == u'.' || (first >= u'0' && first <= u'9');
  }
  if (IsBlankText(word.before)) word.before = {};
  return word;
}

bool WouldJoin(std::u16string_view token, std::u16string_view text) {
  // What goes on is an operator of two characters or a text with a doubled quote.
  constexpr std::u16string_view kJoining = u"=<>*'";
  if (token.empty() || kJoining.find(token.back()) == kJoining.npos) return false;
  if (text.empty() || kJoining.find(text.front()) == kJoining.npos) return false;
  const std::u16string both = std::u16string(token).append(text);
  return (*Tokens(both).begin()).size() != token.size();
}

}  // namespace ORKBASE
