// Statements with named values, as a user writes them (`where id = :id`), turned into what every
// database takes: a `?` for each value.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ORKDB {

struct NamedStatement {
  std::u16string text;                ///< with a `?` for each value
  std::vector<std::u16string> names;  ///< each once, in the order in which they first stand there
  std::vector<std::size_t> places;    ///< for each `?` the index of its name
};

/// A colon begins a name where a letter or `_` follows; a name goes on with letters, digits and
/// `_`. Texts ('...', with `\` in E'...'), quoted names ("...", `...`, [...]) and comments (--, /*
/// */) are left as they are, and so is `::`. Throws `StoreFailure` for a `?` outside of them.
NamedStatement ReadNamedValues(std::u16string_view statement);

}  // namespace ORKDB
