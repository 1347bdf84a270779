// Any file may be asked for its version: whatever it holds, there is a signed record or nothing.
#include "component/version_section.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto info = orvane::component::ReadVersionSection(std::as_bytes(std::span(data, size)));
  if (info && info->dwSignature != orvane::platform::kFixedFileInfoSignature) std::abort();
  return 0;
}
