// Reading a text whose own words decide what others of it mean.
#pragma once

#include <string_view>

namespace ORKBASE {

class AuthoringCall;
struct RuleReading;

/// As `AuthoringCall::Read`, but with all tables that the text names loaded before its first word:
/// `orders.qty` in front of `Orders.Amount` is then the field that it is at any later reading.
void ReadSettled(AuthoringCall& call, std::u16string_view text, RuleReading& reading);

}  // namespace ORKBASE
