// The shared error pair and the exception of refused translations.
#include "MxErrorState.h"
#include "Mx_Exception.h"

#include <utility>

namespace ORKBASE {

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
      location(locationNumber) {}

Mx_Exception::~Mx_Exception() = default;

}  // namespace ORKBASE
