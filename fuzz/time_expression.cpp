// Any text may be compared with a time column: it is a time that the system handles, or an error
// at a place inside the text.
#include "zones/time_expression.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <variant>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvane::zones;
  static const TimeZone zone("Europe/Madrid");
  const std::string_view sText(reinterpret_cast<const char*>(data), size);
  const orvane::platform::Timestamp now(std::chrono::seconds(1700000000));
  const auto result = ReadTimeExpression(sText, zone, now);
  if (const auto* const timestamp = std::get_if<orvane::platform::Timestamp>(&result)) {
    if (!IsInRange(*timestamp)) std::abort();
  } else if (std::get<TimeExpressionError>(result).position > size) {
    std::abort();
  }
  return 0;
}
