// Searching below nodes, each node once: a search at each handler would make nested ones quadratic.
// Handlers go from the outside in, so what lies below a node that is still to be handled is as the
// first pass left it, or a copy of that: what the search at an outer one found still holds.
#include "translator/Insides.h"

#include "MxRuleEnums.h"
#include "translator/NumberTest.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kWildCard = u"%";
constexpr std::uint8_t kSearched = 4;

}  // namespace

bool HoldsWildCard(std::u16string_view text) noexcept {
  return text.find(kWildCard) != text.npos;
}

bool IsField(Tag tag) {
  for (const std::int32_t symbol : {kReportFieldSymbol, kDataFieldSymbol, kCAXFieldSymbol}) {
    if (EqualsNumber(tag.GetPlain(Attr::kSymbol), symbol)) return true;
  }
  return false;
}

void SearchInside(Tag node) {
  if (!node || (node.node()->marks & kSearched) != 0) return;
  const auto mark = [&](Tag tag, Inside what) {
    for (TagNode* at = tag.node(); (at->marks & what) == 0; at = at->parent) {
      at->marks = static_cast<std::uint8_t>(at->marks | what);
      if (at == node.node()) return;
    }
  };
  for (Tag tag = node; tag; tag = tag.NextInDocument(node)) {
    tag.node()->marks = kSearched;
    if (HoldsWildCard(tag.GetPlain(Attr::kText))) mark(tag, kWildCardInside);
    if (IsField(tag)) mark(tag, kFieldInside);
  }
}

bool Holds(Tag node, Inside what) noexcept {
  return node && (node.node()->marks & what) != 0;
}

}  // namespace ORKBASE
