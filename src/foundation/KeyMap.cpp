// Lower-cased search keys; short ones need no memory of their own.
#include "foundation/KeyMap.h"

#include "foundation/Text.h"

namespace ORKBASE {

LookupKey::LookupKey(std::u16string_view text) : data_(short_), size_(text.size()) {
  char16_t* out = short_;
  if (size_ > kShort) {
    long_.resize(size_);
    out = long_.data();
    data_ = out;
  }
  for (std::size_t i = 0; i < size_; ++i) out[i] = ToLower(text[i]);
  hash_ = KeyHash::Of(this->text());
}

}  // namespace ORKBASE
