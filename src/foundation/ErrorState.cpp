// The shared error pair and the exception of refused translations.
#include "MxErrorState.h"
#include "Mx_Exception.h"
#include "foundation/Text.h"

#include <utility>

namespace ORKBASE {
namespace {

std::string Sentence(std::u16string_view message, std::u16string_view function) {
  if (!message.empty()) return WideToUtf8(message);
  return "The database has no form for the function " + WideToUtf8(function) + ".";
}

}  // namespace

void MxErrorState::myRaiseError(std::int32_t number, std::u16string description) {
  errNumber_ = number;
  errDescription_ = std::move(description);
}

void MxErrorState::ResetError() noexcept {
  errNumber_ = 0;
  errDescription_.clear();
}

Mx_Exception::Mx_Exception(std::u16string messageText, std::u16string moduleName,
                           std::u16string functionName, std::uint32_t locationNumber)
    : message(std::move(messageText)),
      module(std::move(moduleName)),
      function(std::move(functionName)),
      location(locationNumber),
      what_(Sentence(message, function)) {}

Mx_Exception::~Mx_Exception() = default;

}  // namespace ORKBASE
