// Text that is written once, from front to back.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace ORKBASE {

/// Collects 16-bit text. The memory is kept over `Clear`, up to a limit, so that a text of the same
/// size again asks the system for nothing. Used by one thread at a time.
class TextWriter {
 public:
  /// Valid until something is written.
  std::u16string_view text() const noexcept { return {units_.get(), size_}; }
  void Clear() noexcept;

  TextWriter& operator+=(char16_t unit) {
    *Room(1) = unit;
    ++size_;
    return *this;
  }
  /// Text from elsewhere.
  TextWriter& operator+=(std::u16string_view text) {
    WroteUpTo(std::copy(text.begin(), text.end(), Room(text.size())));
    return *this;
  }

  /// A literal, whose length the compiler knows.
  template <std::size_t kSize>
  TextWriter& operator+=(const char16_t (&literal)[kSize]) {
    return *this += std::u16string_view(literal, kSize - 1);
  }

  /// Where the text goes on, with room for so many units; what was put there counts once its end is
  /// told.
  char16_t* Room(std::size_t units) {
    if (units > capacity_ - size_) Grow(units);
    return units_.get() + size_;
  }
  void WroteUpTo(const char16_t* end) noexcept {
    size_ = static_cast<std::size_t>(end - units_.get());
  }

 private:
  void Grow(std::size_t units);

  std::unique_ptr<char16_t[]> units_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

void AppendDecimal(TextWriter& out, std::int32_t value);

}  // namespace ORKBASE
