// Maps with lower-case text keys, searched in any case without making a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>

namespace ORKBASE {

/// A lower-cased key with its hash, made once for a search through several dictionaries.
class LookupKey {
 public:
  explicit LookupKey(std::u16string_view text);
  LookupKey(const LookupKey&) = delete;
  LookupKey& operator=(const LookupKey&) = delete;

  std::u16string_view text() const noexcept { return {data_, size_}; }
  std::size_t hash() const noexcept { return hash_; }

 private:
  static constexpr std::size_t kShort = 48;
  char16_t short_[kShort];
  std::u16string long_;
  const char16_t* data_;
  std::size_t size_;
  std::size_t hash_;
};

/// Hash of lower-case keys, for both kinds of text and for keys that bring their hash along. Not
/// noexcept, by which the standard library tells hashes worth keeping in the nodes from cheap ones.
struct KeyHash {
  using is_transparent = void;
  std::size_t operator()(std::u16string_view text) const { return Of(text); }
  std::size_t operator()(const LookupKey& key) const { return key.hash(); }

  /// Four units at a time; keys are short.
  static std::size_t Of(std::u16string_view text) noexcept {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t hash = text.size() * kFactor;
    const auto add = [&hash](std::uint64_t units) {
      hash = (hash ^ units) * kFactor;
      hash ^= hash >> 32;
    };
    std::uint64_t units = 0;
    for (; text.size() >= 4; text.remove_prefix(4)) {
      std::memcpy(&units, text.data(), sizeof units);
      add(units);
    }
    units = 0;
    for (const char16_t unit : text) units = units << 16 | unit;
    add(units);
    return static_cast<std::size_t>(hash);
  }
};

struct KeyEqual {
  using is_transparent = void;
  static std::u16string_view Text(std::u16string_view text) noexcept { return text; }
  static std::u16string_view Text(const LookupKey& key) noexcept { return key.text(); }
  template <class A, class B>
  bool operator()(const A& a, const B& b) const noexcept {
    return Text(a) == Text(b);
  }
};

template <class Value>
using KeyMap = std::unordered_map<std::u16string, Value, KeyHash, KeyEqual>;

}  // namespace ORKBASE
