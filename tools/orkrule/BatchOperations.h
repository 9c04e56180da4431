// The operations of a batch: a table of names and handlers over the facade.
#pragma once

#include "BatchLine.h"
#include "Output.h"

#include "MxExpression.h"

#include <map>
#include <memory>
#include <string>

namespace ORKTOOL {

/// The objects of one run. "main" exists from the start.
class BatchSession {
 public:
  BatchSession();

  /// Carries out the call of a line and sets the fields of its answer. Throws `BadLine` where there
  /// is no call to carry out; nothing has happened then.
  void Run(const BatchLine& line, Json& answer);

  using Objects = std::map<std::string, std::unique_ptr<ORKBASE::MxExpression>>;

 private:
  Objects objects_;
};

}  // namespace ORKTOOL
