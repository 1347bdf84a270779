#include "exports/value_text.h"

#include <charconv>

#include "platform/conversions.h"

namespace orvane::exports {

using platform::Text;
using platform::Value;

namespace {

// Where it is to stand: digits that are copied at once from where they were just written are waited
// for, which takes several times as long as writing them.
template <class Number>
void AppendNumber(Text& sOut, Number number) {
  constexpr std::size_t kLongest = 32;
  const std::size_t begin = sOut.size();
  sOut.resize(begin + kLongest);
  const char* end = std::to_chars(sOut.data() + begin, sOut.data() + sOut.size(), number).ptr;
  sOut.resize(static_cast<std::size_t>(end - sOut.data()));
}

void AppendTwoDigits(Text& sOut, long nNumber) {
  sOut += static_cast<char>('0' + nNumber / 10 % 10);
  sOut += static_cast<char>('0' + nNumber % 10);
}

}  // namespace

void AppendTime(Text& sOut, platform::Timestamp timestamp, const zones::TimeZone& zone,
                char cSeparator) {
  const std::size_t nStart = sOut.size();
  const auto offset = zone.OffsetAt(timestamp);
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(offset);
  const bool bWhole = minutes == offset && zones::IsInRange(timestamp);
  sOut += platform::ToText(Value(bWhole ? timestamp + offset : timestamp));
  if (const auto nBlank = sOut.find(' ', nStart); nBlank != Text::npos) sOut[nBlank] = cSeparator;
  if (!bWhole) {
    sOut += 'Z';
    return;
  }
  const long nMinutes = minutes.count();
  sOut += nMinutes < 0 ? '-' : '+';
  AppendTwoDigits(sOut, std::abs(nMinutes) / 60);
  sOut += ':';
  AppendTwoDigits(sOut, std::abs(nMinutes) % 60);
}

void AppendDouble(Text& sOut, double dValue) {
  const std::size_t nStart = sOut.size();
  AppendNumber(sOut, dValue);
  if (sOut.find_first_of(".ein", nStart) == Text::npos) sOut += ".0";
}

void AppendValue(Text& sOut, const Value& vtValue, const zones::TimeZone& zone) {
  if (const auto* sText = vtValue.As<Text>()) {
    sOut += *sText;
  } else if (const auto* d = vtValue.As<double>()) {
    AppendNumber(sOut, *d);
  } else if (const auto* ll = vtValue.As<std::int64_t>()) {
    AppendNumber(sOut, *ll);
  } else if (const auto* l = vtValue.As<std::int32_t>()) {
    AppendNumber(sOut, *l);
  } else if (const auto* timestamp = vtValue.As<platform::Timestamp>()) {
    AppendTime(sOut, *timestamp, zone);
  } else {
    sOut += platform::ToText(vtValue);
  }
}

}  // namespace orvane::exports
