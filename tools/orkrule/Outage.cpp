#include "Outage.h"

#include <atomic>
#include <cstddef>

namespace ORKTOOL {
namespace {

std::atomic<std::size_t> askedFor = 0;

}  // namespace

void AskedForRule() noexcept {
  ++askedFor;
}

std::string OutageText(const Outage& outage) {
  std::string text = "the database gives no answer: " + outage.text;
  if (askedFor == 0) return text;
  const std::size_t done = askedFor - 1;
  return text + "\n  " + std::to_string(done) + (done == 1 ? " rule is" : " rules are") +
         " done, the run stops here";
}

}  // namespace ORKTOOL
