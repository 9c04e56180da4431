// Cutting a rule into tokens that join back to it.
#pragma once

#include <iterator>
#include <string_view>

namespace ORKBASE {

/// Whether a character ends a word: a blank, a bracket, a sign of an operator.
bool IsDelimiter(char16_t unit) noexcept;

/// The tokens of a text, in order: `for (const std::u16string_view token : Tokens(text))`. Words,
/// operators of one or two characters, text constants (an unclosed one runs to the end) and runs of
/// blanks are tokens; a line break outside a text constant counts as a blank. None is empty.
class Tokens {
 public:
  class Iterator {
   public:
    explicit Iterator(std::u16string_view text) noexcept : rest_(text) { Cut(); }
    std::u16string_view operator*() const noexcept { return token_; }
    Iterator& operator++() noexcept {
      rest_.remove_prefix(token_.size());
      Cut();
      return *this;
    }
    bool operator==(std::default_sentinel_t) const noexcept { return token_.empty(); }

   private:
    void Cut() noexcept;

    std::u16string_view rest_;
    std::u16string_view token_;
  };

  explicit Tokens(std::u16string_view text) noexcept : text_(text) {}
  Iterator begin() const noexcept { return Iterator(text_); }
  std::default_sentinel_t end() const noexcept { return {}; }

 private:
  std::u16string_view text_;
};

}  // namespace ORKBASE
