// Memory for text that is being written.
#include "foundation/TextWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace ORKBASE {
namespace {

constexpr std::size_t kSmallest = 512;
constexpr std::size_t kMostKept = 1 << 20;

}  // namespace

void TextWriter::Clear() noexcept {
  size_ = 0;
  if (capacity_ <= kMostKept) return;
  units_.reset();
  capacity_ = 0;
}

void TextWriter::Grow(std::size_t units) {
  const std::size_t capacity = std::max({size_ + units, 2 * capacity_, kSmallest});
  auto grown = std::make_unique_for_overwrite<char16_t[]>(capacity);
  std::copy_n(units_.get(), size_, grown.get());
  units_ = std::move(grown);
  capacity_ = capacity;
}

void AppendDecimal(TextWriter& out, std::int32_t value) {
  if (value >= 0 && value <= 9) {
    out += static_cast<char16_t>(u'0' + value);
    return;
  }
  std::array<char, 12> digits;
  const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  const auto length = static_cast<std::size_t>(end - digits.data());
  out.WroteUpTo(std::copy_n(digits.data(), length, out.Room(length)));
}

}  // namespace ORKBASE
