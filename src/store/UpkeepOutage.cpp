// What upkeep throws where the database, not a rule, is to blame.
#include "RuleUpkeep.h"

#include "foundation/Text.h"

#include <utility>

namespace ORKBASE {

UpkeepOutage::UpkeepOutage(std::int32_t number, std::u16string text)
    : number_(number), text_(std::move(text)), what_(WideToUtf8(text_)) {}
UpkeepOutage::UpkeepOutage(const UpkeepOutage& other) = default;
UpkeepOutage& UpkeepOutage::operator=(const UpkeepOutage& other) = default;
UpkeepOutage::~UpkeepOutage() = default;

}  // namespace ORKBASE
