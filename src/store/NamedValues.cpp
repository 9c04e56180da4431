#include "store/NamedValues.h"

#include "foundation/MessageNumbers.h"
#include "store/StoreRefusal.h"

#include <map>
#include <utility>

namespace ORKDB {
namespace {

/// As databases see it: whatever is not ASCII is a letter.
bool IsLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' ||
         unit >= 0x80;
}

bool IsNameUnit(char16_t unit) {
  return IsLetter(unit) || (unit >= u'0' && unit <= u'9');
}

/// Walks a statement from piece to piece.
class Scanner {
 public:
  explicit Scanner(std::u16string_view statement) : all_(statement) {}

  NamedStatement Read() {
    while (at_ < all_.size()) ReadPiece();
    return std::move(made_);
  }

 private:
  char16_t Unit(std::size_t index) const { return index < all_.size() ? all_[index] : u'\0'; }
  bool Begins(std::u16string_view text) const { return all_.substr(at_).starts_with(text); }

  void CopyTo(std::size_t end) {
    made_.text.append(all_, at_, end - at_);
    at_ = end;
  }

  void ReadPiece() {
    const char16_t unit = all_[at_];
    if (unit == u'?') Refuse(ORKBASE::kMsgStoreQuestionMark);
    if (unit == u'\'' || unit == u'"' || unit == u'`') return CopyTo(QuotedEnd(unit));
    if (unit == u'[') return CopyTo(EndBehind(u"]"));
    if (Begins(u"--")) return CopyTo(EndBehind(u"\n"));
    if (Begins(u"/*")) return CopyTo(EndBehind(u"*/"));
    if (unit == u':') return ReadColons();
    CopyTo(at_ + 1);
  }

  /// Behind the next `text` that stands behind what begins here, or at the end.
  std::size_t EndBehind(std::u16string_view text) const {
    const std::size_t begin = at_ + text.size();  // of "/*/" the star does not close it
    const std::size_t found = all_.find(text, begin);
    return found == all_.npos ? all_.size() : found + text.size();
  }

  /// Behind the closing quote; a doubled one closes nothing.
  std::size_t QuotedEnd(char16_t quote) const {
    const bool hasEscapes = quote == u'\'' && IsBehindE();
    std::size_t i = at_ + 1;
    while (i < all_.size()) {
      const bool isPair =
          (all_[i] == quote && Unit(i + 1) == quote) || (hasEscapes && all_[i] == u'\\');
      if (all_[i] == quote && !isPair) return i + 1;
      i += isPair ? 2 : 1;
    }
    return all_.size();
  }

  /// Whether an `E` stands before the quote, and is no end of a longer word.
  bool IsBehindE() const {
    if (at_ == 0 || (all_[at_ - 1] != u'E' && all_[at_ - 1] != u'e')) return false;
    return at_ == 1 || !IsNameUnit(all_[at_ - 2]);
  }

  void ReadColons() {
    std::size_t end = at_ + 1;
    if (Unit(end) == u':') {
      while (Unit(end) == u':') ++end;
      return CopyTo(end);
    }
    if (!IsLetter(Unit(end))) return CopyTo(end);
    while (IsNameUnit(Unit(end))) ++end;
    AddName(std::u16string(all_.substr(at_ + 1, end - at_ - 1)));
    at_ = end;
  }

  void AddName(std::u16string name) {
    const auto [known, isNew] = indices_.try_emplace(name, made_.names.size());
    if (isNew) made_.names.push_back(std::move(name));
    made_.places.push_back(known->second);
    made_.text += u'?';
  }

  std::u16string_view all_;
  std::size_t at_ = 0;
  NamedStatement made_;
  std::map<std::u16string, std::size_t> indices_;
};

}  // namespace

NamedStatement ReadNamedValues(std::u16string_view statement) {
  return Scanner(statement).Read();
}

}  // namespace ORKDB
