// The one table of calls. Whatever opens the engine to the outside (lines of JSON, a service,
// another language) takes its operations, their checks and their help from these rows.
#pragma once

#include "service/Call.h"
#include "service/Fields.h"

#include <span>
#include <string_view>

namespace ORKBASE {

/// What a call does with the object that it names.
enum class Reach {
  kNoObject,   ///< needs none
  kSession,    ///< needs one; touches it, other objects or the thread
  kStateless,  ///< needs one, whose modes, connection and names stay: may be open to strangers
};

/// Which calls of a session may run beside each other.
enum class Order {
  kStrict,        ///< behind all before it and before all behind it
  kReads,         ///< beside others that only read, on a copy of its object
  kReadsEditing,  ///< the same for what an editor asks, which loads tables for itself
};

/// One call. Its handler finds every field of `in` in the `Call`, checked and of its type, and
/// gives every field of `out`, in this order.
struct CallRow {
  std::string_view name;
  Reach reach;
  Order order;
  std::span<const FieldIn> in;
  std::span<const FieldOut> out;
  void (*run)(Call& call);
};

std::span<const CallRow> AllCalls() noexcept;

/// The row of a name, null where there is none.
const CallRow* FindCall(std::u16string_view name) noexcept;

}  // namespace ORKBASE
