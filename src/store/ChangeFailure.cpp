#include "store/ChangeFailure.h"

#include "foundation/Format.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <system_error>

namespace ORKDB {
namespace {

/// How a text begins, or what it has in it.
struct InterferenceText {
  std::u16string_view text;
  bool isBeginning;
};
// clang-format off
constexpr InterferenceText kInterferenceTexts[] = {
    {u"[40001]",   true},   // could not be serialised; victim of a deadlock
    {u"[40P01]",   true},   // a deadlock, in PostgreSQL and what descends from it
    {u"ORA-08177", false},  // could not be serialised
    {u"ORA-00060", false},  // a deadlock
};
// clang-format on

constexpr std::int32_t kSqliteBusy = 5;
constexpr std::int32_t kSqliteLocked = 6;

}  // namespace

StoreFailure ChangeFailure(std::int32_t message, std::initializer_list<std::u16string_view> texts) {
  const std::u16string pattern = ORKBASE::LoadMessage(message);
  std::u16string text;
  switch (texts.size()) {
    case 0:
      text = ORKBASE::Format(pattern, {});
      break;
    case 1:
      text = ORKBASE::Format(pattern, {texts.begin()[0]});
      break;
    default:
      text = ORKBASE::Format(pattern, {texts.begin()[0], texts.begin()[1]});
      break;
  }
  return {-1, text, false};
}

std::u16string SystemText(int number) {
  return ORKBASE::Utf8ToWide(std::generic_category().message(number));
}

bool IsInterference(const StoreFailure& failure, std::u16string_view server) noexcept {
  const std::int32_t primary = failure.Number() & 0xFF;  // SQLite's number without its details
  if (server.starts_with(u"sqlite:") && failure.Number() > 0 &&
      (primary == kSqliteBusy || primary == kSqliteLocked)) {
    return true;
  }
  for (const InterferenceText& row : kInterferenceTexts) {
    const std::size_t at = failure.Text().find(row.text);
    if (at != std::u16string::npos && (at == 0 || !row.isBeginning)) return true;
  }
  return false;
}

}  // namespace ORKDB
