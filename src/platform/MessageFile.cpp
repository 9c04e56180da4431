// The walk through a message file. Offsets are 64 bits wide and made of 32-bit parts, so that no
// sum of them can wrap around.
#include "platform/MessageFile.h"

#include <algorithm>
#include <array>

namespace ORKBASE {
namespace {

constexpr std::uint32_t kDosMagic = 0x5A4D;  // "MZ"
constexpr std::uint32_t kPeMagic = 0x4550;   // "PE", then two zeros
constexpr std::uint32_t kPe32 = 0x10B;
constexpr std::uint32_t kPe32Plus = 0x20B;
constexpr std::uint32_t kResourceDirectory = 2;  // index in the table of data directories
constexpr std::uint32_t kStringTables = 6;       // resource type
constexpr std::uint32_t kSectionSize = 40;
constexpr std::uint32_t kEntrySize = 8;
constexpr std::uint32_t kIsDirectory = 0x80000000;
constexpr std::int32_t kTextsInBlock = 16;
constexpr LanguageId kEnglish = 0x0409;
constexpr LanguageId kWhole = 0xFFFF;
constexpr LanguageId kPrimary = 0x3FF;
// kept: what a reader gets that prepared its answer with blanks and then never filled it.
constexpr std::size_t kUnfilledLength = 512;

}  // namespace

MessageFile::MessageFile(std::span<const std::byte> bytes) noexcept : bytes_(bytes) {
  if (!LocateSections() || !FileOffset(resourceAddress_, resources_)) return;
  blocks_ = FindDirectory(OpenDirectory(resources_), kStringTables);
}

std::u16string MessageFile::Text(std::int32_t number, LanguageId thread, LanguageId user) const {
  if (number < 0) return {};
  const auto index = static_cast<std::uint32_t>(number % kTextsInBlock);
  const Directory languages =
      FindDirectory(blocks_, static_cast<std::uint32_t>(number / kTextsInBlock + 1));
  if (thread != 0) {
    const Entry entry = FindExact(languages, ExactLanguage(thread), index);
    if (entry.outcome == Outcome::kText) return Units(entry);
    if (entry.outcome == Outcome::kBlockTooShort) return std::u16string(kUnfilledLength, u' ');
  }
  // A language that is not known must not match the neutral one ahead of its turn.
  const LanguageId neutral = 0;
  const LanguageId never = kWhole;
  const std::array<Preference, 6> order{{{thread ? PrimaryLanguage(thread) : never, kPrimary},
                                         {user ? ExactLanguage(user) : never, kWhole},
                                         {user ? PrimaryLanguage(user) : never, kPrimary},
                                         {neutral, kWhole},
                                         {kEnglish, kWhole},
                                         {neutral, 0}}};
  for (const Preference& wanted : order) {
    const Entry entry = FindPreferred(languages, wanted, index);
    if (entry.outcome == Outcome::kText) return Units(entry);
  }
  return {};
}

std::vector<LanguageId> MessageFile::Languages() const {
  std::vector<LanguageId> all;
  std::uint32_t id = 0;
  std::uint32_t target = 0;
  for (Directory blocks = blocks_; TakeEntry(blocks, id, target);) {
    if (!(target & kIsDirectory)) continue;
    Directory languages = OpenDirectory(resources_ + (target & ~kIsDirectory));
    while (TakeEntry(languages, id, target)) {
      const auto language = static_cast<LanguageId>(id);
      if (std::find(all.begin(), all.end(), language) == all.end()) all.push_back(language);
    }
  }
  return all;
}

bool MessageFile::Read16(std::uint64_t offset, std::uint32_t& value) const noexcept {
  if (offset > bytes_.size() || bytes_.size() - offset < 2) return false;
  const std::byte* at = bytes_.data() + offset;
  value = std::to_integer<std::uint32_t>(at[0]) | std::to_integer<std::uint32_t>(at[1]) << 8;
  return true;
}

bool MessageFile::Read32(std::uint64_t offset, std::uint32_t& value) const noexcept {
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  if (!Read16(offset, low) || !Read16(offset + 2, high)) return false;
  value = low | high << 16;
  return true;
}

bool MessageFile::LocateSections() noexcept {
  std::uint32_t magic = 0;
  std::uint32_t pe = 0;
  if (!Read16(0, magic) || magic != kDosMagic || !Read32(0x3C, pe)) return false;
  if (!Read32(pe, magic) || magic != kPeMagic) return false;
  const std::uint64_t optional = std::uint64_t{pe} + 24;
  std::uint32_t optionalSize = 0;
  if (!Read16(std::uint64_t{pe} + 6, sectionCount_)) return false;
  if (!Read16(std::uint64_t{pe} + 20, optionalSize) || !Read16(optional, magic)) return false;
  if (magic != kPe32 && magic != kPe32Plus) return false;
  const std::uint64_t directories = optional + (magic == kPe32 ? 96 : 112);
  std::uint32_t directoryCount = 0;
  if (!Read32(directories - 4, directoryCount) || directoryCount <= kResourceDirectory) {
    return false;
  }
  sections_ = optional + optionalSize;
  return Read32(directories + std::size_t{8} * kResourceDirectory, resourceAddress_) &&
         resourceAddress_ != 0;
}

bool MessageFile::FileOffset(std::uint32_t address, std::uint64_t& offset) const noexcept {
  for (std::uint32_t i = 0; i < sectionCount_; ++i) {
    const std::uint64_t section = sections_ + std::uint64_t{i} * kSectionSize;
    std::uint32_t start = 0;
    std::uint32_t size = 0;
    std::uint32_t raw = 0;
    if (!Read32(section + 12, start) || !Read32(section + 16, size)) return false;
    if (!Read32(section + 20, raw)) return false;
    if (address < start || address - start >= size) continue;
    offset = std::uint64_t{raw} + (address - start);
    return true;
  }
  return false;
}

MessageFile::Directory MessageFile::OpenDirectory(std::uint64_t offset) const noexcept {
  std::uint32_t named = 0;
  std::uint32_t numbered = 0;
  if (!Read16(offset + 12, named) || !Read16(offset + 14, numbered)) return {};
  return {offset + 16 + std::uint64_t{named} * kEntrySize, numbered};
}

/// Takes the first entry off `rest`; false where none is left or the bytes end before it does.
bool MessageFile::TakeEntry(Directory& rest, std::uint32_t& id,
                            std::uint32_t& target) const noexcept {
  if (rest.count == 0 || !Read32(rest.first, id) || !Read32(rest.first + 4, target)) return false;
  rest.first += kEntrySize;
  --rest.count;
  return true;
}

/// The directory below the entry with this number, an empty one where there is none.
MessageFile::Directory MessageFile::FindDirectory(Directory rest, std::uint32_t id) const noexcept {
  std::uint32_t found = 0;
  std::uint32_t target = 0;
  while (TakeEntry(rest, found, target)) {
    if (found == id && (target & kIsDirectory)) {
      return OpenDirectory(resources_ + (target & ~kIsDirectory));
    }
  }
  return {};
}

MessageFile::Entry MessageFile::FindExact(Directory languages, LanguageId language,
                                          std::uint32_t index) const noexcept {
  std::uint32_t found = 0;
  std::uint32_t target = 0;
  while (TakeEntry(languages, found, target)) {
    if (found == language && !(target & kIsDirectory)) return ReadBlock(target, index);
  }
  return {};
}

/// The first text among all languages that match: one that is empty or cut is passed over.
MessageFile::Entry MessageFile::FindPreferred(Directory languages, Preference wanted,
                                              std::uint32_t index) const noexcept {
  std::uint32_t found = 0;
  std::uint32_t target = 0;
  while (TakeEntry(languages, found, target)) {
    if ((found & wanted.mask) != wanted.language || (target & kIsDirectory)) continue;
    const Entry entry = ReadBlock(target, index);
    if (entry.outcome == Outcome::kText) return entry;
  }
  return {};
}

MessageFile::Entry MessageFile::ReadBlock(std::uint32_t dataEntry,
                                          std::uint32_t index) const noexcept {
  std::uint32_t address = 0;
  std::uint32_t size = 0;
  std::uint64_t offset = 0;
  if (!Read32(resources_ + dataEntry, address)) return {};
  if (!Read32(resources_ + dataEntry + 4, size) || !FileOffset(address, offset)) return {};
  if (offset + size > bytes_.size()) return {};
  return WalkBlock(offset, offset + size, index);
}

MessageFile::Entry MessageFile::WalkBlock(std::uint64_t offset, std::uint64_t end,
                                          std::uint32_t index) const noexcept {
  for (std::uint32_t i = 0;; ++i) {
    std::uint32_t length = 0;
    if (offset + 2 > end || !Read16(offset, length)) return {Outcome::kBlockTooShort};
    const std::uint64_t text = offset + 2;
    offset = text + std::uint64_t{length} * 2;
    if (i < index) continue;
    if (offset > end) return {Outcome::kBlockTooShort};
    return {length == 0 ? Outcome::kNoText : Outcome::kText, text, length};
  }
}

std::u16string MessageFile::Units(const Entry& entry) const {
  std::u16string text;
  text.reserve(entry.length);
  for (std::uint32_t i = 0; i < entry.length; ++i) {
    std::uint32_t unit = 0;
    if (!Read16(entry.offset + std::uint64_t{i} * 2, unit) || unit == 0) break;
    text.push_back(static_cast<char16_t>(unit));
  }
  return text;
}

}  // namespace ORKBASE
