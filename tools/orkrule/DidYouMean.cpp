#include "DidYouMean.h"

#include "Text.h"

#include "RuleAuthoring.h"

namespace ORKTOOL {

std::string DidYouMean(const std::string& text, const std::vector<std::string>& names) {
  std::vector<std::u16string> wide;
  wide.reserve(names.size());
  for (const std::string& name : names) wide.push_back(FromUtf8(name).value_or(u""));
  const std::vector<std::u16string_view> views(wide.begin(), wide.end());
  const std::u16string_view near = ORKBASE::NearestName(FromUtf8(text).value_or(u""), views);
  return near.empty() ? "" : "; did you mean \"" + ToUtf8(near) + "\"?";
}

std::string Joined(const std::vector<std::string>& names, const std::string& between) {
  std::string joined;
  for (const std::string& name : names) {
    if (!joined.empty()) joined += between;
    joined += name;
  }
  return joined;
}

}  // namespace ORKTOOL
