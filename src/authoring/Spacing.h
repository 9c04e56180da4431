// Where blanks stand in a rule that is written for people.
#pragma once

#include <cstdint>
#include <string_view>

namespace ORKBASE {

/// Goes along the words of a rule. One blank stands around operators and behind commas, none
/// within brackets beside them, between a function and its bracket, and behind a minus that has no
/// operand in front. Two neighbours without a blank stay two tokens.
class Spacing {
 public:
  /// Takes the next word, told by `MXRULE_SYMBOL_TYPE` and canonical spelling; whether a blank
  /// stands in front of it.
  bool BlankBefore(std::int32_t symbol, std::u16string_view primary) noexcept;

 private:
  enum class Kind : std::uint8_t {
    kOperand,
    kCallee,  ///< a function, or an unknown word, which may be meant for one
    kOpening,
    kClosing,
    kComma,
    kOperator,
    kPostfix,
    kSign,  ///< a minus in front of its operand
  };

  Kind KindOf(std::int32_t symbol, std::u16string_view primary) const noexcept;
  bool AwaitsOperand() const noexcept;

  Kind before_ = Kind::kOpening;
};

}  // namespace ORKBASE
