// Values as JSON: UTF-8, without white space, nothing escaped but what has to be.
#pragma once

#include "service/Fields.h"

#include <string>
#include <string_view>

namespace ORKBASE {

/// Appends a text in its quotes. A lone surrogate becomes U+FFFD.
void AppendJson(std::string& out, std::u16string_view text);

/// Appends the fields of a record with commas between, without braces around.
void AppendMembers(std::string& out, const Record& record);

}  // namespace ORKBASE
