// Rows of tags over time, for tests of trends.
#pragma once

#include <cmath>

#include "ado/recordset_builder.h"

namespace orvane::trend {

inline platform::Timestamp Second(std::int64_t n) {
  return platform::Timestamp(std::chrono::seconds(1'700'000'000 + n));
}

/// A row a second for each of two tags: "a" rises from 0, "b" falls from 0; each tenth of "b" has
/// no value.
inline platform::RecordsetPtr TwoTags(int nSeconds) {
  using platform::DataType;
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                 {"Timestamp", DataType::DBTimeStamp},
                                 {"Value", DataType::Double},
                                 {"Status", DataType::WChar}});
  for (int n = nSeconds - 1; n >= 0; --n) {
    builder.AppendRow({"a", Second(n), static_cast<double>(n), "Good"});
    builder.AppendRow(
        {"b", Second(n), n % 10 == 9 ? platform::Value() : platform::Value(-0.5 * n), "Good"});
  }
  return builder.Finish();
}

}  // namespace orvane::trend
