// Any text may be entered where a number is wanted: it is one, or fails with 6 or 13; and what is
// shown of a number reads back as that number.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/conversions.h"
#include "platform/failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane::platform;
  try {
    const Long lNumber = TextToLong({reinterpret_cast<const char*>(data), size});
    if (TextToLong(ToText(Value(lNumber))) != lNumber) std::abort();
  } catch (const Failure& failure) {
    if (failure.Number() != failure::kOverflow && failure.Number() != failure::kTypeMismatch) {
      std::abort();
    }
  }
  return 0;
}
