// Verifying words: postfixes, constants, and fields of tables that were not loaded yet.
#include "lexer/Lexer.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "platform/LocaleDates.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

struct TypePostfix {
  std::u16string_view postfix;
  MXRULE_DATATYPE dataType;
};

// clang-format off
constexpr TypePostfix kTypePostfixes[] = {
    {u"[S]", kStrDataType},
    {u"[N]", kNumDataType},
    {u"[D]", kDateDataType},
};

/// Columns that every data table has and no dictionary lists.
constexpr std::u16string_view kPseudoColumns[] = {u"LUMENTARCID", u"RCID", u"LUMENTARN"};
// clang-format on

/// Fills in the error and returns false.
bool Refuse(const WordView& word, std::int32_t message, MxErrorRecord& error) {
  std::vector<MxErrorRecord> behind = std::move(error.behind);
  error = MakeError(kRuleCause, message, {word.content});
  const bool isOutage = !behind.empty() && behind.front().cause == kDatabaseCause;
  if (isOutage) error.cause = kDatabaseCause;
  error.behind = std::move(behind);
  return false;
}

void BecomeConstant(WordView& word, MXRULE_DATATYPE dataType) noexcept {
  word.symbol = kConstantSymbol;
  word.dataType = dataType;
}

bool IsHexDigitOrDot(char c) noexcept {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F') || c == '.';
}

/// Whether the C library's conversion to a double, in the "C" locale, takes the whole text: blanks
/// in front count as part of it, and so does a sign.
/// kept: "inf", "nan" and hexadecimal forms are numbers, too.
bool IsNumber(std::u16string_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (const char16_t unit : text) {
    if (unit == u'\0' || unit >= 0x80) return false;
    narrow += static_cast<char>(unit);
  }
  std::string_view rest = narrow;
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size()));
  if (rest.starts_with('+') || rest.starts_with('-')) rest.remove_prefix(1);
  if (rest.empty() || rest.front() == '-') return false;
  const bool isHexadecimal =
      rest.size() > 2 && rest[0] == '0' && (rest[1] | 0x20) == 'x' && IsHexDigitOrDot(rest[2]);
  if (isHexadecimal) rest.remove_prefix(2);
  double value = 0;
  const char* const end = rest.data() + rest.size();
  const auto result = std::from_chars(
      rest.data(), end, value, isHexadecimal ? std::chars_format::hex : std::chars_format::general);
  return result.ec != std::errc::invalid_argument && result.ptr == end;
}

bool IsDate(std::u16string_view primary) {
  if (primary.size() < 3) return false;  // nothing between the quotes
  return IsDateText(ReplaceAll(primary.substr(1, primary.size() - 2), u".", u"-"));
}

/// Looks for a quote without its twin.
/// kept: the search begins behind the second character and stops in front of the last, so a text
/// that begins with a doubled quote is refused and one that ends in a single one inside is not.
bool HasUnpairedQuote(std::u16string_view primary) noexcept {
  const std::size_t last = primary.size() - 1;
  if (last < 3) return false;
  for (std::size_t i = 2; i < last; ++i) {
    if (primary[i] != u'\'') continue;
    if (primary[i + 1] != u'\'') return true;
    ++i;
  }
  return false;
}

}  // namespace

bool IsPseudoColumn(std::u16string_view field) {
  const std::u16string upper = ToUpper(field);
  return std::any_of(std::begin(kPseudoColumns), std::end(kPseudoColumns),
                     [&](std::u16string_view column) { return upper == column; });
}

bool Lexer::Settle(WordView& word, MxErrorRecord& error) const {
  if (word.symbol != kUnknownSymbol) {
    if (word.postfixCheck == kTypePostfix) return VerifyDataTypePostfix(word, error);
    return word.postfixCheck != kTablePostfix || VerifyDataTablePostfix(word);
  }
  if (!VerifyConstant(word, error)) return false;
  if (word.symbol == kUnknownSymbol) VerifyDataField(word, error);
  return word.symbol != kUnknownSymbol || Refuse(word, kMsgUnknownWord, error);
}

bool Lexer::VerifyDataTypePostfix(WordView& word, MxErrorRecord& error) const {
  constexpr std::size_t kLength = 3;
  if (word.primary.size() < kLength) return Refuse(word, kMsgBadPostfix, error);
  const std::u16string_view postfix = word.primary.substr(word.primary.size() - kLength);
  for (const TypePostfix& row : kTypePostfixes) {
    if (!EqualsIgnoringCase(postfix, row.postfix)) continue;
    word.dataType = row.dataType;
    return true;
  }
  return Refuse(word, kMsgBadPostfix, error);
}

bool Lexer::VerifyDataTablePostfix(const WordView& word) const {
  const std::size_t bracket = word.primary.find(u'[');
  if (bracket == word.primary.npos) return true;
  std::u16string_view name = word.primary.substr(bracket + 1);
  if (!name.empty()) name.remove_suffix(1);
  // kept: refused without an error of its own.
  MxErrorRecord ignored;
  return source && source->BindTable(name, ignored);
}

bool Lexer::VerifyConstant(WordView& word, MxErrorRecord& error) const {
  const std::u16string_view primary = word.primary;
  if (IsNumber(primary)) BecomeConstant(word, kNumDataType);
  if (word.symbol != kUnknownSymbol || !primary.starts_with(u'\'')) return true;
  if (primary.size() == 1) return Refuse(word, kMsgUnpairedQuote, error);
  if (!primary.ends_with(u'\'')) return Refuse(word, kMsgUnclosedText, error);
  if (IsDate(primary)) {
    BecomeConstant(word, kDateDataType);
    return true;
  }
  if (HasUnpairedQuote(primary)) return Refuse(word, kMsgUnpairedQuote, error);
  BecomeConstant(word, kStrDataType);
  return true;
}

void Lexer::VerifyDataField(WordView& word, MxErrorRecord& error) const {
  const auto pieces = SplitText(word.outDesc, u".");
  if (pieces.size() != 2 || !source) return;
  MxErrorRecord behind;
  if (!source->BindTable(pieces[0], behind)) {
    error.behind.push_back(std::move(behind));
    return;
  }
  if (IsPseudoColumn(pieces[1])) {
    word.symbol = kDataFieldSymbol;
    return;
  }
  if (const MxWord* found = Find(word.outDesc)) {
    const std::u16string_view written = word.written;
    const std::int32_t token = word.token;
    // kept: the word comes whole, and its `content` is empty.
    word = ViewOf(*found);
    word.written = written;
    word.token = token;
  }
}

}  // namespace ORKBASE
