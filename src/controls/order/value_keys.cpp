#include "controls/order/value_keys.h"

#include <algorithm>
#include <utility>

namespace orvane::controls {

namespace {

constexpr std::string_view kBeforeChrist = " BC";

}  // namespace

int CompareDecimals(std::string_view sOne, std::string_view sOther) {
  const bool bNegative = sOne.starts_with('-');
  if (bNegative != sOther.starts_with('-')) return bNegative ? -1 : 1;
  if (bNegative) return CompareDecimals(sOther.substr(1), sOne.substr(1));
  const auto split = [](std::string_view sDigits) {
    const std::size_t point = std::min(sDigits.find('.'), sDigits.size());
    std::string_view sWhole = sDigits.substr(0, point);
    std::string_view sPart = sDigits.substr(std::min(point + 1, sDigits.size()));
    sWhole.remove_prefix(std::min(sWhole.find_first_not_of('0'), sWhole.size()));
    sPart = sPart.substr(0, sPart.find_last_not_of('0') + 1);
    return std::pair(sWhole, sPart);
  };
  const auto [sWholeOne, sPartOne] = split(sOne);
  const auto [sWholeOther, sPartOther] = split(sOther);
  if (sWholeOne.size() != sWholeOther.size()) {
    return sWholeOne.size() < sWholeOther.size() ? -1 : 1;
  }
  const int nWhole = sWholeOne.compare(sWholeOther);
  const int nOrder = nWhole != 0 ? nWhole : sPartOne.compare(sPartOther);
  return nOrder < 0 ? -1 : nOrder > 0 ? 1 : 0;
}

int CompareTexts(std::string_view sOne, std::string_view sOther, platform::TextOrder order) {
  if (order == platform::TextOrder::TrailingBlanks) {
    sOne = sOne.substr(0, sOne.find_last_not_of(' ') + 1);
    sOther = sOther.substr(0, sOther.find_last_not_of(' ') + 1);
  }
  if (order != platform::TextOrder::NoCase) return sOne.compare(sOther);
  const auto small = [](char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  };
  const auto differ = std::ranges::mismatch(sOne, sOther, {}, small, small);
  if (differ.in1 != sOne.end() && differ.in2 != sOther.end()) {
    return small(*differ.in1) < small(*differ.in2) ? -1 : 1;
  }
  return sOne.size() < sOther.size() ? -1 : sOne.size() > sOther.size() ? 1 : 0;
}

bool IsBeforeValues(std::string_view sText) {
  return sText.starts_with('-') || sText.ends_with(kBeforeChrist);
}

std::string BeyondKey(std::string_view sText) {
  std::string sKey(sText);
  const std::size_t digits = sText.find_first_not_of("0123456789");
  if (digits == 0 || digits == std::string_view::npos) return sKey;
  if (!sText.ends_with(kBeforeChrist)) {
    // Years have as many digits as they need.
    sKey.insert(sKey.begin(), static_cast<char>('0' + std::min<std::size_t>(digits, 9)));
    return sKey;
  }
  // Of years before the first one the larger number is the earlier one.
  for (std::size_t n = 0; n < digits; ++n) sKey[n] = static_cast<char>('0' + '9' - sKey[n]);
  return sKey;
}

}  // namespace orvane::controls
