// Values that do not fit what they are compared with, and words that the SQL can do nothing with.
#include "authoring/WarningList.h"

#include "platform/DisplayNames.h"

namespace ORKBASE {
namespace {

bool IsKnown(std::int32_t dataType) noexcept {
  return dataType == kNumDataType || dataType == kStrDataType || dataType == kDateDataType;
}

/// `d = 'x'`, whichever side comes first.
void WarnOfComparison(WarningList& list, const PlacedNode& comparison) {
  for (const std::int32_t side : {0, 1}) {
    const PlacedNode* text = list.places().Child(comparison, side);
    const PlacedNode* date = list.places().Child(comparison, 1 - side);
    if (!text || !date || !IsTextConstant(*text)) continue;
    if (date->dataType != kDateDataType || IsDateConstant(*date)) continue;
    list.AtWord(*text, kMsgNotReadAsDate, {list.Written(*text)});
  }
}

/// A value against the type of those that it is compared with.
void WarnOfMember(WarningList& list, const PlacedNode& member, std::int32_t others) {
  const std::int32_t type = member.dataType;
  if (!IsKnown(type) || !IsKnown(others) || type == others) return;
  if (others == kDateDataType && IsTextConstant(member)) {
    list.AtWord(member, kMsgNotReadAsDate, {list.Written(member)});
    return;
  }
  // Among texts it is one.
  if (others == kStrDataType && IsDateConstant(member)) return;
  const Language language = list.call().TextLanguage();
  list.AtAll(member, kMsgOddMemberType,
             {DataTypeName(type, language), DataTypeName(others, language)});
}

/// The type that all members are held against: that of the value in front, else of the first
/// member that has one. A constant that reads as a date may be a text as well.
std::int32_t TypeAsked(const WarningList& list, const PlacedNode& value, const PlacedNode& set) {
  if (IsKnown(value.dataType) && !IsDateConstant(value)) return value.dataType;
  for (const PlacedNode* member = list.places().Child(set, 0); member;
       member = member->next < 0 ? nullptr : &list.places().At(member->next)) {
    if (IsKnown(member->dataType) && !IsDateConstant(*member)) return member->dataType;
  }
  return kVarDataType;
}

void WarnOfSet(WarningList& list, const PlacedNode& value, const PlacedNode& set) {
  const std::int32_t asked = TypeAsked(list, value, set);
  if (IsDateConstant(value)) WarnOfMember(list, value, asked);
  for (const PlacedNode* member = list.places().Child(set, 0); member;
       member = member->next < 0 ? nullptr : &list.places().At(member->next)) {
    WarnOfMember(list, *member, asked);
  }
}

void WarnOfIn(WarningList& list, const PlacedNode& in) {
  const PlacedNode* value = list.places().Child(in, 0);
  const PlacedNode* set = list.places().Child(in, 1);
  if (!value || !set) return;
  if (in.Is(u"between")) {
    WarnOfMember(list, *value, kDateDataType);
  } else {
    WarnOfSet(list, *value, *set);
  }
}

bool IsPicture(const PlacedNode& node) {
  return node.dataType == kPicDataType || node.dataType == kLinkDataType;
}

/// Tests for emptiness, counts and choices take pictures, and a rule may be one.
bool ComparesOrPrints(const PlacedNode& node) {
  return node.symbol == kOpRelaSymbol || node.symbol == kOpInSymbol ||
         node.symbol == kOpJoinSymbol || node.Is(u"thisSet") || node.Is(u"ToText") ||
         node.Is(u"ToDate");
}

void WarnOfPicture(WarningList& list, const PlacedNode& node) {
  const PlacedNode* parent = list.places().Parent(node);
  if (!IsPicture(node) || !parent || !ComparesOrPrints(*parent)) return;
  list.AtAll(node, kMsgPictureUnused, {list.ShownAll(node)});
}

bool HasCadDocument(const WarningList& list) {
  for (const auto& entry : list.call().Dictionaries().dictionaries()) {
    if (entry.second->isCax()) return true;
  }
  return false;
}

/// Fields that lie below `not_in thisSet`; parents come first.
void WarnOfEmptyMembers(WarningList& list) {
  std::vector<bool> isBelow(list.nodes().size());
  for (const PlacedNode& node : list.nodes()) {
    const PlacedNode* parent = list.places().Parent(node);
    if (!parent) continue;
    const auto index = static_cast<std::size_t>(list.places().IndexOf(node));
    isBelow[index] = isBelow[static_cast<std::size_t>(node.parent)] ||
                     (node.Is(u"thisSet") && parent->Is(u"not_in"));
    if (!isBelow[index] || !IsColumn(node)) continue;
    list.AtWord(node, kMsgNotInOverColumn, {list.Written(node)}, kInformationSeverity);
  }
}

}  // namespace

void WarnOfTypes(WarningList& list) {
  const bool hasCadDocument = HasCadDocument(list);
  for (const PlacedNode& node : list.nodes()) {
    if (IsComparison(node)) WarnOfComparison(list, node);
    if (node.symbol == kOpInSymbol) WarnOfIn(list, node);
    WarnOfPicture(list, node);
    if (node.symbol == kCAXFieldSymbol && !hasCadDocument) {
      list.AtWord(node, kMsgCadNotLoaded, {list.Written(node)});
    }
  }
  WarnOfEmptyMembers(list);
}

}  // namespace ORKBASE
