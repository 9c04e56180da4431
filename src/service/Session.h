// A run of calls over engines that have names: what stands between a door and the table of calls.
#pragma once

#include "service/Call.h"
#include "service/Fields.h"

namespace ORKBASE {

/// Owns the engines of one caller; "main" exists from the start. One thread at a time.
class Session {
 public:
  Session();

  /// Carries out the call that the request names and returns its answer: the fields of the call, or
  /// `thrown` alone where it left by an exception, and the error pair of the object. Takes the
  /// values out of the request. Throws `BadRequest` where there is no call to carry out.
  Record Run(Request& request);

 private:
  Engines engines_;
};

}  // namespace ORKBASE
