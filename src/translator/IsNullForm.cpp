// The is-null form. Key columns are never null; dates are never wrapped.
#include "translator/IsNullForm.h"

#include "MxRuleEnums.h"
#include "foundation/Text.h"

#include <utility>

namespace ORKBASE {
namespace {

constexpr std::u16string_view kKeyColumns[] = {u".RCID", u".LumentaRCID"};

bool EndsInKeyColumn(std::u16string_view text) {
  for (const std::u16string_view suffix : kKeyColumns) {
    if (text.size() > suffix.size() &&
        EqualsIgnoringCase(text.substr(text.size() - suffix.size()), suffix)) {
      return true;
    }
  }
  return false;
}

}  // namespace

void WrapIsNull(std::int32_t dataType, std::u16string& text, std::u16string_view name) {
  std::u16string_view substitute;
  if (dataType == kNumDataType) {
    substitute = u",0)";
  } else if ((dataType == kStrDataType || dataType == kMemoDataType) && !EndsInKeyColumn(text)) {
    substitute = u",'')";
  } else {
    return;
  }
  std::u16string form;
  form.reserve(name.size() + 1 + text.size() + substitute.size());
  text = std::move(form.append(name).append(1, u'(').append(text).append(substitute));
}

}  // namespace ORKBASE
