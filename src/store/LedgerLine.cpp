// Lines of a ledger as JSON. They are read back in just the form in which they are written.
#include "store/LedgerFile.h"
#include "store/ValueCode.h"

#include <charconv>

namespace ORKDB {
namespace {

constexpr std::string_view kRun = R"({"run":")";
constexpr std::string_view kId = R"(","id":)";
constexpr std::string_view kWas = R"(,"was":")";
constexpr std::string_view kIs = R"(","is":")";
constexpr std::string_view kLeftId = R"(","left":)";
constexpr std::string_view kState = R"(","state":")";
constexpr std::string_view kTextEnd = R"("})";
constexpr std::size_t kHexDigits = 16;

struct StateRow {
  LedgerLine::Kind kind;
  std::string_view name;
};
// clang-format off
constexpr StateRow kStates[] = {
    {LedgerLine::kPrepared,  "prepared"},
    {LedgerLine::kCommitted, "committed"},
    {LedgerLine::kWithdrawn, "withdrawn"},
    {LedgerLine::kFinished,  "finished"},
    {LedgerLine::kForgotten, "forgotten"},
};
// clang-format on

bool TakeFront(std::string_view& text, std::string_view piece) {
  if (!text.starts_with(piece)) return false;
  text.remove_prefix(piece.size());
  return true;
}

bool TakeBack(std::string_view& text, std::string_view piece) {
  if (!text.ends_with(piece)) return false;
  text.remove_suffix(piece.size());
  return true;
}

bool TakeBackNumber(std::string_view& text, std::uint64_t& number) {
  if (text.size() < kHexDigits) return false;
  const char* end = text.data() + text.size();
  if (std::from_chars(end - kHexDigits, end, number, 16).ptr != end) return false;
  text.remove_suffix(kHexDigits);
  return true;
}

bool ReadState(std::string_view name, LedgerLine& line) {
  for (const StateRow& row : kStates) {
    if (row.name != name) continue;
    line.kind = row.kind;
    return true;
  }
  return false;
}

bool IsId(std::string_view text) {
  StoreValue id;
  return ReadIdText(text, id);
}

}  // namespace

std::string TextOf(const LedgerLine& line) {
  std::string text(kRun);
  text += line.run;
  if (line.kind == LedgerLine::kWrote) {
    text.append(kId).append(line.id).append(kWas).append(HexOf(line.was));
    return text.append(kIs).append(HexOf(line.is)).append(kTextEnd);
  }
  if (line.kind == LedgerLine::kLeft) return text.append(kLeftId).append(line.id).append("}");
  for (const StateRow& row : kStates) {
    if (row.kind == line.kind) text.append(kState).append(row.name).append(kTextEnd);
  }
  return text;
}

bool ReadLedgerLine(std::string_view text, LedgerLine& line) {
  if (!TakeFront(text, kRun) || text.size() < kHexDigits) return false;
  line.run = text.substr(0, kHexDigits);
  text.remove_prefix(kHexDigits);
  if (TakeFront(text, kState)) return TakeBack(text, kTextEnd) && ReadState(text, line);
  line.kind = text.starts_with(kLeftId) ? LedgerLine::kLeft : LedgerLine::kWrote;
  if (line.kind == LedgerLine::kLeft) {
    if (!TakeFront(text, kLeftId) || !TakeBack(text, "}")) return false;
  } else {
    const bool isRead = TakeFront(text, kId) && TakeBack(text, kTextEnd) &&
                        TakeBackNumber(text, line.is) && TakeBack(text, kIs) &&
                        TakeBackNumber(text, line.was) && TakeBack(text, kWas);
    if (!isRead) return false;
  }
  line.id = text;
  return IsId(text);
}

}  // namespace ORKDB
