// A libFuzzer target over rules: clang++ -fsanitize=fuzzer,address, see CONTRIBUTING.md.
#include "FuzzTargets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ORKFUZZ::TryRule(std::string(data, data + size));
  return 0;
}
