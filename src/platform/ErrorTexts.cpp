// Error records as texts.
#include "platform/ErrorTexts.h"

#include "foundation/Format.h"
#include "platform/DisplayNames.h"
#include "platform/MessageTexts.h"

#include <array>

namespace ORKBASE {
namespace {

constexpr std::size_t kMostArguments = 2;

std::u16string TextOf(const MxErrorArgument& argument, Language language) {
  switch (argument.kind) {
    case MxErrorArgument::kText:
      return argument.text;
    case MxErrorArgument::kDataType:
      return DataTypeName(argument.number, language);
    case MxErrorArgument::kSymbol:
      return SymbolName(argument.number, language);
  }
  return {};
}

}  // namespace

MxErrorRecord MakeError(MXRULE_ERROR_CAUSE cause, std::int32_t message,
                        std::initializer_list<std::u16string_view> texts) {
  MxErrorRecord error;
  error.cause = cause;
  error.number = kOwnError;
  error.message = message;
  for (const std::u16string_view text : texts) {
    error.arguments.push_back({MxErrorArgument::kText, 0, std::u16string(text)});
  }
  return error;
}

std::u16string DescriptionOf(const MxErrorRecord& error, Language language) {
  if (error.message == 0) return error.text;
  std::array<std::u16string, kMostArguments> texts;
  for (std::size_t i = 0; i < texts.size() && i < error.arguments.size(); ++i) {
    texts[i] = TextOf(error.arguments[i], language);
  }
  const std::u16string pattern = LoadMessage(error.message, language);
  switch (error.arguments.size()) {
    case 0:
      return error.text + pattern;
    case 1:
      return error.text + Format(pattern, {texts[0]});
    default:
      return error.text + Format(pattern, {texts[0], texts[1]});
  }
}

std::u16string ErrorTextIn(const MxErrorRecord& error, Language language) {
  if (error.cause == kDatabaseCause && !error.behind.empty()) {
    return ErrorTextIn(error.behind.front(), language);
  }
  const bool isNameless = !error.arguments.empty() &&
                          error.arguments.front().kind == MxErrorArgument::kText &&
                          error.arguments.front().text.empty();
  if (!isNameless || error.word.empty()) return DescriptionOf(error, language);
  MxErrorRecord named = error;
  named.arguments.front().text = error.word;
  return DescriptionOf(named, language);
}

std::u16string ErrorText(const MxErrorRecord& error) {
  return ErrorTextIn(error, CurrentLanguage());
}

}  // namespace ORKBASE
