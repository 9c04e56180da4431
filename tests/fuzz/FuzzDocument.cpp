// A libFuzzer target over documents, expression documents and CAX ones.
#include "FuzzTargets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  ORKFUZZ::TryDocument(bytes);
  ORKFUZZ::TryCaxDocument(bytes);
  return 0;
}
