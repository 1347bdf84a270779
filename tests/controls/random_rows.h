// Random values for a column of each type that the engine has, the ends of each among them, and
// null.
#pragma once

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "platform/conversions.h"
#include "platform/value.h"

namespace orvane::tests {

/// The columns for the values of RandomRows, as a table is made with them.
inline constexpr const char* kColumnOfEachType =
    " (Nr BIGINT NOT NULL PRIMARY KEY, i INT, b BIGINT, d DOUBLE, f BOOLEAN, s TEXT, x BLOB, t "
    "TIMESTAMP,"
    " y DATE, c TIME, g GUID, n NUMERIC)";

class RandomRows {
 public:
  using Value = platform::Value;

  /// With NaN among the doubles where it is so.
  explicit RandomRows(std::uint64_t seed, bool bNaN = false) : m_random(seed), m_bNaN(bNaN) {}

  std::vector<Value> Row(std::int64_t llNumber) {
    using namespace std::chrono;
    std::vector<Value> values{
        Of<std::int32_t>({0}, [&] { return static_cast<std::int32_t>(m_random()); }),
        Of<std::int64_t>({9007199254740993},
                         [&] { return static_cast<std::int64_t>(m_random()) >> (Less(64)); }),
        Double(),
        Less(2) == 0,
        Piece(),
        Bytes(),
        Timestamp(),
        platform::Date(days(static_cast<int>(Less(700'000)))),
        platform::TimeOfDay(static_cast<std::int64_t>(Less(86'400'000'000))),
        Guid(),
        Decimal()};
    for (Value& vtValue : values) {
      if (Less(8) == 0) vtValue = Value();
    }
    values.insert(values.begin(), llNumber);
    return values;
  }

 private:
  std::uint64_t Less(std::uint64_t end) { return m_random() % end; }
  /// A number of the type: one of the edges, or of the ends of the type, or any other.
  template <class Number>
  Value Of(std::vector<Number> edges, const auto& any) {
    edges.push_back(std::numeric_limits<Number>::min());
    edges.push_back(std::numeric_limits<Number>::max());
    return Less(4) == 0 ? edges[Less(edges.size())] : any();
  }
  double Double() {
    constexpr double kEdges[] = {5e-324,
                                 1.7976931348623157e308,
                                 0.1,
                                 -0.0,
                                 -1e22,
                                 std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity()};
    if (m_bNaN && Less(8) == 0) return std::numeric_limits<double>::quiet_NaN();
    if (Less(3) == 0) return kEdges[Less(std::size(kEdges))];
    double d = 0;
    do d = std::bit_cast<double>(m_random());
    while (std::isnan(d));
    return d;
  }
  platform::Text Piece() {
    static const std::vector<platform::Text> kPieces{"a",
                                                     ",",
                                                     "\"",
                                                     "\r",
                                                     platform::Text(1, '\0'),
                                                     "\n",
                                                     "\t",
                                                     ";",
                                                     "'",
                                                     "\xC3\xA9",
                                                     "NULL",
                                                     " ",
                                                     "",
                                                     "*",
                                                     "\xF0\x9F\x9A\x80",
                                                     "0",
                                                     "\xE2\x80\xA8",
                                                     "\x7F"};
    platform::Text sText;
    for (std::uint64_t n = Less(6); n > 0; --n) sText += kPieces[Less(kPieces.size())];
    return sText;
  }
  platform::Bytes Bytes() {
    platform::Bytes bytes(Less(20));
    for (auto& byte : bytes) byte = static_cast<std::byte>(m_random());
    return bytes;
  }
  platform::Timestamp Timestamp() {
    using namespace std::chrono;
    const platform::Timestamp edges[] = {
        platform::Timestamp(), platform::Timestamp(microseconds(-1)), sys_days(year{1} / 1 / 2),
        sys_days(year{9999} / 12 / 31) - microseconds(1),
        sys_days(year{2024} / 10 / 27) + hours(1) + microseconds(1)};
    if (Less(4) == 0) return edges[Less(std::size(edges))];
    return platform::Timestamp(
        microseconds(static_cast<std::int64_t>(m_random()) % 60'000'000'000'000'000));
  }
  platform::Guid Guid() {
    platform::Guid guid;
    for (auto& byte : guid.bytes) byte = static_cast<std::uint8_t>(m_random());
    return guid;
  }
  /// Of as many digits as such a column keeps.
  Value Decimal() {
    if (Less(3) == 0) {
      return platform::Decimal{std::to_string(static_cast<std::int64_t>(m_random()))};
    }
    constexpr int kBitsOfDouble = 53;
    const double dAny = static_cast<double>(m_random() >> (64 - kBitsOfDouble)) / 7;
    const platform::Text sDigits = platform::ToText(Less(2) == 0 ? dAny : -dAny);
    return platform::Decimal{sDigits.find('e') == platform::Text::npos ? sDigits : "0.1"};
  }

  std::mt19937_64 m_random;
  bool m_bNaN;
};

}  // namespace orvane::tests
