// Reads the string tables of a resource-only PE file, the format of the message file. The bytes may
// come from anywhere: every offset in them is checked before it is used.
//
// Where a text lies: headers -> section table -> resource directory -> type 6 (string tables) ->
// block number / 16 + 1 -> language -> data entry -> sixteen UTF-16 texts, each behind its length.
// Text 6260 is entry 4 of block 392.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ORKBASE {

/// Number of a language in resources: the primary language in the low 10 bits, above them the
/// variant of it. 0x0804 is Chinese (4) as in China (2). 0 stands for no language.
using LanguageId = std::uint16_t;

constexpr LanguageId PrimaryLanguage(LanguageId language) noexcept {
  return language & 0x3FF;
}
/// The variant; 1 for a number that holds none.
constexpr LanguageId SubLanguage(LanguageId language) noexcept {
  return language < 1024 ? LanguageId{1} : static_cast<LanguageId>(language >> 10);
}
/// The number under which texts of a language are looked for first.
constexpr LanguageId ExactLanguage(LanguageId language) noexcept {
  return static_cast<LanguageId>(SubLanguage(language) << 10 | PrimaryLanguage(language));
}

/// A view of a message file; the bytes must outlive it. A value, never changed, so any thread may
/// read. Bytes that are no such file hold no texts.
class MessageFile {
 public:
  MessageFile() noexcept = default;
  explicit MessageFile(std::span<const std::byte> bytes) noexcept;

  /// The text of a number up to its first zero, empty where there is none. `thread` is tried first.
  /// Where it has no text or an empty one, follow: its primary language, `user`, the primary
  /// language of that, neutral, English (United States), the languages in the order of the file.
  /// A block of `thread` that ends before the text does gives 512 blanks, and nothing is tried
  /// after it.
  std::u16string Text(std::int32_t number, LanguageId thread, LanguageId user) const;

  /// The languages that have texts, each once, in the order of the file.
  std::vector<LanguageId> Languages() const;

 private:
  enum class Outcome { kNoText, kText, kBlockTooShort };
  struct Entry {
    Outcome outcome = Outcome::kNoText;
    std::uint64_t offset = 0;  // of the first unit
    std::uint32_t length = 0;  // in units
  };
  struct Directory {
    std::uint64_t first = 0;  // offset of the first entry that has a number
    std::uint32_t count = 0;
  };
  struct Preference {
    LanguageId language;
    LanguageId mask;
  };

  bool Read16(std::uint64_t offset, std::uint32_t& value) const noexcept;
  bool Read32(std::uint64_t offset, std::uint32_t& value) const noexcept;
  bool LocateSections() noexcept;
  bool FileOffset(std::uint32_t address, std::uint64_t& offset) const noexcept;
  Directory OpenDirectory(std::uint64_t offset) const noexcept;
  bool TakeEntry(Directory& rest, std::uint32_t& id, std::uint32_t& target) const noexcept;
  Directory FindDirectory(Directory rest, std::uint32_t id) const noexcept;
  Entry FindExact(Directory languages, LanguageId language, std::uint32_t index) const noexcept;
  Entry FindPreferred(Directory languages, Preference wanted, std::uint32_t index) const noexcept;
  Entry ReadBlock(std::uint32_t dataEntry, std::uint32_t index) const noexcept;
  Entry WalkBlock(std::uint64_t offset, std::uint64_t end, std::uint32_t index) const noexcept;
  std::u16string Units(const Entry& entry) const;

  std::span<const std::byte> bytes_;
  std::uint64_t sections_ = 0;  // offset of the section table
  std::uint32_t sectionCount_ = 0;
  std::uint32_t resourceAddress_ = 0;
  std::uint64_t resources_ = 0;  // offset of the resource directory
  Directory blocks_;
};

}  // namespace ORKBASE
