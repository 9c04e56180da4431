// Measuring a document without parsing it. Every mark of a well-formed document is told by how it
// begins and where it ends:
//
//   <!-- ... -->   <![CDATA[ ... ]]>   <? ... ?>   <!DOCTYPE ... [ ... ]>   </ ... >   < ... "..."
//   >
//
// Only in a document type and in an element may its end stand in quotes.
#include "xml/XmlLimits.h"

namespace ORKBASE {
namespace {

// ` a=""` for each attribute, and no "<" among them.
constexpr std::size_t kShortestAttribute = 5;
constexpr std::size_t kLongElement = kShortestAttribute * XmlLimits::kAttributesOfElement;

/// A text that is read from front to back.
class MarkReader {
 public:
  explicit MarkReader(std::string_view text) noexcept : rest_(text) {}

  std::size_t left() const noexcept { return rest_.size(); }
  bool ToNextMark() noexcept { return DropUpTo(rest_.find('<')); }

  /// Passes a comment, an instruction or a section of characters; false at anything else.
  bool PassedRemark() noexcept {
    return Passed("<!--", "-->") || Passed("<?", "?>") || Passed("<![CDATA[", "]]>");
  }

  bool AtDocumentType() const noexcept { return rest_.starts_with("<!"); }

  void PassDocumentType() noexcept {
    if (NextOf("[>\"'") != '[') return;
    while (NextOf("]<\"'") == '<') {
      if (!PassedRemark()) rest_.remove_prefix(1);
    }
  }

  /// Passes an element's opening or closing; how many values stood in it.
  std::size_t PassElement() noexcept {
    values_ = 0;
    NextOf(">\"'");
    return values_;
  }

 private:
  /// Goes behind the next of these characters, or onto it where it is "<"; passes what stands in
  /// quotes. A zero at the end of the text.
  char NextOf(const char* marks) noexcept {
    while (DropUpTo(rest_.find_first_of(marks))) {
      const char mark = rest_.front();
      if (mark == '<') return mark;
      rest_.remove_prefix(1);
      if (mark != '"' && mark != '\'') return mark;
      if (!DropUpTo(rest_.find(mark))) break;
      rest_.remove_prefix(1);
      ++values_;
    }
    return '\0';
  }

  bool Passed(std::string_view begin, std::string_view end) noexcept {
    if (!rest_.starts_with(begin)) return false;
    rest_.remove_prefix(begin.size());
    if (DropUpTo(rest_.find(end))) rest_.remove_prefix(end.size());
    return true;
  }

  /// False when there is no such place; nothing is left then.
  bool DropUpTo(std::size_t place) noexcept {
    const bool found = place != rest_.npos;
    rest_.remove_prefix(found ? place : rest_.size());
    return found;
  }

  std::string_view rest_;
  std::size_t values_ = 0;
};

bool HasShortDocumentType(std::string_view text) noexcept {
  MarkReader marks(text);
  while (marks.ToNextMark() && marks.PassedRemark()) {
  }
  if (!marks.AtDocumentType()) return true;
  const std::size_t before = marks.left();
  marks.PassDocumentType();
  return before - marks.left() <= XmlLimits::kDocumentTypeBytes;
}

/// Whether there is room for too many attributes between two "<".
bool MayHaveLongElement(std::string_view text) noexcept {
  while (text.size() >= kLongElement) {
    const std::size_t next = text.find('<', 1);
    if ((next == text.npos ? text.size() : next) >= kLongElement) return true;
    text.remove_prefix(next);
  }
  return false;
}

bool HasShortElements(std::string_view text) noexcept {
  if (!MayHaveLongElement(text)) return true;
  MarkReader marks(text);
  while (marks.ToNextMark()) {
    if (marks.PassedRemark()) continue;
    if (marks.AtDocumentType()) {
      marks.PassDocumentType();
    } else if (marks.PassElement() > XmlLimits::kAttributesOfElement) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool IsWithinXmlLimits(std::string_view utf8) noexcept {
  return HasShortDocumentType(utf8) && HasShortElements(utf8);
}

}  // namespace ORKBASE
