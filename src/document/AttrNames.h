// The attributes of expression documents: the one table of their names, for readers and writers.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace ORKBASE {

/// The attributes that the engine reads or writes; the names stand in `kAttrNames`.
enum class Attr : std::uint8_t {
  kPrimary,
  kOutDesc,
  kSymbol,
  kDataType,
  kContent,
  kSemanticType,
  kInBrackets,
  kText,
  kTransType,
  kTargetDesc,
  kRttId,
  kRttName,
  kRtfId,
  kRtfName,
  kCreated,
  kTempTabName,
  kDtId,
  kFldId,
  kCaxTName,
  kCaxFName,
  kIfGrpBy,
  kInSubQry,
  kOther,
};

// clang-format off
inline constexpr std::u16string_view kAttrNames[] = {
    u"primary",
    u"outDesc",
    u"symbol",
    u"dataType",
    u"content",
    u"semanticType",
    u"inBrackets",
    u"text",
    u"transType",
    u"targetDesc",
    u"rttId",
    u"rttName",
    u"rtfId",
    u"rtfName",
    u"created",
    u"tempTabName",
    u"dtId",
    u"fldId",
    u"caxTName",
    u"caxFName",
    u"ifgrpby",
    u"inSubQry",
};
// clang-format on
static_assert(std::size(kAttrNames) == static_cast<std::size_t>(Attr::kOther));

/// The attribute of a local name, `kOther` for a foreign one.
constexpr Attr AttrOf(std::u16string_view localName) noexcept {
  const auto* found = std::find(std::begin(kAttrNames), std::end(kAttrNames), localName);
  return static_cast<Attr>(found - std::begin(kAttrNames));
}

/// ` name="`, which stands in front of a value.
class AttrOpening {
 public:
  constexpr AttrOpening() = default;
  constexpr explicit AttrOpening(std::u16string_view name) {
    Append(u" ");
    Append(name);
    Append(u"=\"");
  }
  constexpr std::u16string_view text() const noexcept { return {units_.data(), size_}; }

 private:
  constexpr void Append(std::u16string_view text) {
    for (const char16_t unit : text) units_[size_++] = unit;
  }

  std::array<char16_t, 24> units_{};
  std::size_t size_ = 0;
};

inline constexpr auto kAttrOpenings = [] {
  std::array<AttrOpening, std::size(kAttrNames)> made;
  std::transform(std::begin(kAttrNames), std::end(kAttrNames), made.begin(),
                 [](std::u16string_view name) { return AttrOpening(name); });
  return made;
}();

/// Of any attribute but `kOther`.
constexpr std::u16string_view OpeningOf(Attr attr) noexcept {
  return kAttrOpenings[static_cast<std::size_t>(attr)].text();
}

}  // namespace ORKBASE
