#include "platform/exact_number.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace orvane::platform {

namespace {

bool IsDigitOfNumber(char c) {
  return c >= '0' && c <= '9';
}

std::size_t CountDigits(std::string_view sText) {
  const auto behind = std::ranges::find_if_not(sText, IsDigitOfNumber);
  return static_cast<std::size_t>(behind - sText.begin());
}

// Behind "e"; one beyond all numbers counts as the largest that there is.
std::optional<long long> ReadExponent(std::string_view sText) {
  constexpr long long kMost = 1'000'000'000'000;
  const bool bNegative = sText.starts_with('-');
  if (bNegative || sText.starts_with('+')) sText.remove_prefix(1);
  if (sText.empty() || CountDigits(sText) != sText.size()) return std::nullopt;
  long long exponent = 0;
  const auto read = std::from_chars(sText.data(), sText.data() + sText.size(), exponent);
  if (read.ec != std::errc()) exponent = kMost;
  exponent = std::min(exponent, kMost);
  return bNegative ? -exponent : exponent;
}

}  // namespace

std::optional<NumberDigits> ReadDigits(std::string_view sText) {
  NumberDigits number;
  number.bNegative = sText.starts_with('-');
  if (number.bNegative || sText.starts_with('+')) sText.remove_prefix(1);
  const std::size_t nWhole = CountDigits(sText);
  number.sDigits = sText.substr(0, nWhole);
  sText.remove_prefix(nWhole);
  number.bWhole = sText.empty();
  if (sText.starts_with('.')) {
    sText.remove_prefix(1);
    const std::size_t nFraction = CountDigits(sText);
    number.sDigits += sText.substr(0, nFraction);
    sText.remove_prefix(nFraction);
  }
  if (number.sDigits.empty()) return std::nullopt;
  number.exponent = static_cast<long long>(nWhole);
  if (!sText.empty()) {
    if (sText.front() != 'e' && sText.front() != 'E') return std::nullopt;
    const auto exponent = ReadExponent(sText.substr(1));
    if (!exponent) return std::nullopt;
    number.exponent += *exponent;
  }
  const std::size_t nZeros = std::min(number.sDigits.find_first_not_of('0'), number.sDigits.size());
  number.sDigits.erase(0, nZeros);
  number.exponent -= static_cast<long long>(nZeros);
  number.sDigits.erase(number.sDigits.find_last_not_of('0') + 1);
  if (number.sDigits.empty()) number.exponent = 0;
  return number;
}

std::optional<Value> ExactNumber(std::string_view sText) {
  const auto digits = ReadDigits(sText);
  if (!digits) return std::nullopt;
  if (sText.starts_with('+')) sText.remove_prefix(1);
  const char* const end = sText.data() + sText.size();
  if (digits->bWhole) {
    std::int64_t llNumber = 0;
    const auto read = std::from_chars(sText.data(), end, llNumber);
    if (read.ec == std::errc()) return Value(llNumber);
  }
  double dNumber = 0;
  if (std::from_chars(sText.data(), end, dNumber).ec != std::errc()) return std::nullopt;
  char written[64];
  const auto behind = std::to_chars(std::begin(written), std::end(written), dNumber).ptr;
  auto kept = ReadDigits({written, static_cast<std::size_t>(behind - written)});
  if (!kept) return std::nullopt;
  kept->bWhole = digits->bWhole;
  if (*kept != *digits) return std::nullopt;
  return Value(dNumber);
}

}  // namespace orvane::platform
