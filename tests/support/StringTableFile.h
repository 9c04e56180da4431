// Writes message files of any shape, also those that no resource compiler makes: empty and cut
// blocks, languages in any order, both widths of the format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

/// One block of sixteen texts in one language. `number` is that of its first text, divided by 16.
struct StringBlock {
  std::uint16_t number = 0;
  std::uint16_t language = 0;
  std::vector<std::byte> bytes;
};

enum class PeWidth { k32, k64 };

/// Bytes in the order of the file, numbers with the low byte first.
class ByteWriter {
 public:
  void Write16(std::size_t value) {
    bytes.push_back(static_cast<std::byte>(value & 0xFF));
    bytes.push_back(static_cast<std::byte>(value >> 8 & 0xFF));
  }
  void Write32(std::size_t value) {
    Write16(value);
    Write16(value >> 16);
  }
  void PadTo(std::size_t size) { bytes.resize(size); }

  std::vector<std::byte> bytes;
};

/// The block with these texts, each at number modulo 16; the others are empty.
inline StringBlock MakeBlock(std::uint16_t language,
                             std::map<std::int32_t, std::u16string_view> texts) {
  ByteWriter writer;
  const std::int32_t first = texts.begin()->first / 16 * 16;
  for (std::int32_t number = first; number < first + 16; ++number) {
    writer.Write16(texts[number].size());
    for (const char16_t unit : texts[number]) writer.Write16(unit);
  }
  return {static_cast<std::uint16_t>(first / 16), language, writer.bytes};
}

/// The resource part of the file, which will be loaded at `address`. The languages of a block
/// stand in the order in which they are given.
inline std::vector<std::byte> MakeResources(const std::vector<StringBlock>& blocks,
                                            std::size_t address) {
  constexpr std::size_t kIsDirectory = 0x80000000;
  std::map<std::uint16_t, std::vector<const StringBlock*>> byNumber;
  for (const StringBlock& block : blocks) byNumber[block.number].push_back(&block);

  ByteWriter out;
  const auto directory = [&out](std::size_t entries) {
    out.PadTo(out.bytes.size() + 14);
    out.Write16(entries);
  };
  const auto entry = [&out](std::size_t id, std::size_t target) {
    out.Write32(id);
    out.Write32(target);
  };
  directory(1);
  entry(6, 24 | kIsDirectory);
  directory(byNumber.size());
  std::size_t next = 24 + 16 + 8 * byNumber.size();
  for (const auto& [number, languages] : byNumber) {
    entry(number + std::size_t{1}, next | kIsDirectory);
    next += 16 + 8 * languages.size();
  }
  for (const auto& [number, languages] : byNumber) {
    directory(languages.size());
    for (const StringBlock* block : languages) {
      entry(block->language, next);
      next += 16;
    }
  }
  for (const auto& [number, languages] : byNumber) {
    for (const StringBlock* block : languages) {
      entry(address + next, block->bytes.size());
      entry(0, 0);
      next += block->bytes.size();
    }
  }
  for (const auto& [number, languages] : byNumber)
    for (const StringBlock* block : languages)
      out.bytes.insert(out.bytes.end(), block->bytes.begin(), block->bytes.end());
  return out.bytes;
}

/// A resource-only PE file of one section.
inline std::vector<std::byte> MakeStringTableFile(const std::vector<StringBlock>& blocks,
                                                  PeWidth width = PeWidth::k64) {
  constexpr std::size_t kAddress = 0x1000;
  constexpr std::size_t kHeaderSize = 0x200;
  constexpr std::size_t kPe = 0x40;
  const bool wide = width == PeWidth::k64;
  const std::size_t optionalSize = wide ? 240 : 224;
  const std::vector<std::byte> resources = MakeResources(blocks, kAddress);

  ByteWriter out;
  out.Write16(0x5A4D);
  out.PadTo(0x3C);
  out.Write32(kPe);
  out.Write32(0x4550);
  out.Write16(wide ? 0x8664 : 0x14C);
  out.Write16(1);
  out.PadTo(kPe + 20);
  out.Write16(optionalSize);
  out.Write16(0x2000);
  out.Write16(wide ? 0x20B : 0x10B);
  out.PadTo(kPe + 24 + optionalSize - 16 * 8 - 4);
  out.Write32(16);
  out.PadTo(out.bytes.size() + 16);
  out.Write32(kAddress);
  out.Write32(resources.size());
  out.PadTo(kPe + 24 + optionalSize + 8);
  out.Write32(resources.size());
  out.Write32(kAddress);
  out.Write32(resources.size());
  out.Write32(kHeaderSize);
  out.PadTo(kHeaderSize);
  out.bytes.insert(out.bytes.end(), resources.begin(), resources.end());
  return out.bytes;
}
