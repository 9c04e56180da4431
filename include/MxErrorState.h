// The last error of a working object: the base of the three exported classes.
#pragma once

#include <cstdint>
#include <string>

#include "OrkExport.h"

namespace ORKBASE {

/// The pair of error number and text that every working object keeps. Number 0 is no error; -1 is
/// an error of this library, whose text (UTF-16, language of the thread that met it) tells what
/// happened; other numbers come from the database access.
class ORKRULE_EXPORT MxErrorState {
 public:
  std::int32_t ErrNumber() const noexcept { return errNumber_; }
  std::u16string ErrDescription() const { return errDescription_; }

 protected:
  MxErrorState() = default;
  MxErrorState(const MxErrorState&) = default;
  MxErrorState& operator=(const MxErrorState&) = default;
  ~MxErrorState() = default;

  /// Stores both, also a text beside the number 0.
  void myRaiseError(std::int32_t number, std::u16string description);
  void ResetError() noexcept;

 private:
  std::int32_t errNumber_ = 0;
  std::u16string errDescription_;
};

}  // namespace ORKBASE
