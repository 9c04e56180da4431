#include "store/StoreRefusal.h"

#include "RuleStore.h"
#include "foundation/MessageNumbers.h"
#include "platform/MessageTexts.h"

#include <algorithm>

namespace ORKDB {
namespace {

constexpr bool IsFirstHalf(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsSecondHalf(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

bool IsSpace(char16_t unit) {
  return unit == u' ' || (unit >= u'\t' && unit <= u'\r');
}

}  // namespace

void Refuse(std::int32_t message) {
  throw StoreFailure(-1, ORKBASE::LoadMessage(message), false);
}

void CheckStatement(std::u16string_view statement) {
  if (statement.find(u'\0') != statement.npos) Refuse(ORKBASE::kMsgStoreZeroInStatement);
  if (std::all_of(statement.begin(), statement.end(), IsSpace)) {
    Refuse(ORKBASE::kMsgStatementEmpty);
  }
}

bool HasHalfCharacter(std::u16string_view text) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] < 0xD800 || text[i] > 0xDFFF) continue;
    const bool isPair = IsFirstHalf(text[i]) && i + 1 < text.size() && IsSecondHalf(text[i + 1]);
    if (!isPair) return true;
    ++i;
  }
  return false;
}

}  // namespace ORKDB
