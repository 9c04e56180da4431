// A libFuzzer target over the calls of an editor: any text, place, type and language.
#include "FuzzTargets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ORKFUZZ::TryAuthoring(std::string(data, data + size));
  return 0;
}
