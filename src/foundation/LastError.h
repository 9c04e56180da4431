// The last error of an object that seldom has one.
#pragma once

#include <memory>
#include <utility>

#include "MxErrorRecord.h"

namespace ORKBASE {

/// Costs next to nothing as long as there is no error. Copies share the record, which never
/// changes.
class LastError {
 public:
  /// An empty record for none. Valid until the next change.
  const MxErrorRecord& Get() const noexcept {
    static const MxErrorRecord none;
    return record_ ? *record_ : none;
  }
  void Set(MxErrorRecord error) {
    record_ = std::make_shared<const MxErrorRecord>(std::move(error));
  }
  void Clear() noexcept { record_.reset(); }

 private:
  std::shared_ptr<const MxErrorRecord> record_;
};

}  // namespace ORKBASE
