// What the road to a store throws.
#include "RuleStore.h"

#include "foundation/Text.h"

#include <utility>

namespace ORKDB {

StoreFailure::StoreFailure(std::int32_t number, std::u16string text, bool isOutage)
    : number_(number),
      text_(std::move(text)),
      isOutage_(isOutage),
      what_(ORKBASE::WideToUtf8(text_)) {}
StoreFailure::StoreFailure(const StoreFailure& other) = default;
StoreFailure& StoreFailure::operator=(const StoreFailure& other) = default;
StoreFailure::~StoreFailure() = default;

StoreRows::StoreRows() = default;
StoreRows::~StoreRows() = default;
StoreStatement::StoreStatement() = default;
StoreStatement::~StoreStatement() = default;
StoreConnection::StoreConnection() = default;
StoreConnection::~StoreConnection() = default;

}  // namespace ORKDB
