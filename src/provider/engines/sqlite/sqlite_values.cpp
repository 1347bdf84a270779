#include "provider/engines/sqlite/sqlite_values.h"

#include <fmt/format.h>

#include <cmath>
#include <type_traits>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Value;
namespace failure = platform::failure;

namespace {

int BindText(sqlite3_stmt* statement, int nPlace, std::string_view sText,
             sqlite3_destructor_type keep) {
  return sqlite3_bind_text64(statement, nPlace, sText.data(), sText.size(), keep, SQLITE_UTF8);
}

}  // namespace

int BindValue(sqlite3_stmt* statement, int nPlace, const Value& vtValue, Lifetime lifetime) {
  const auto keep = lifetime == Lifetime::Longer ? SQLITE_STATIC : SQLITE_TRANSIENT;
  return std::visit(
      [&](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, platform::Null>) {
          return sqlite3_bind_null(statement, nPlace);
        } else if constexpr (std::is_same_v<T, bool> || std::is_same_v<T, std::int32_t> ||
                             std::is_same_v<T, std::int64_t>) {
          return sqlite3_bind_int64(statement, nPlace, content);
        } else if constexpr (std::is_same_v<T, double>) {
          // SQLite would take it for null.
          if (std::isnan(content)) {
            throw Failure(failure::kTypeMismatch,
                          "The database keeps no value that is no number (NaN): give a number or "
                          "null.");
          }
          return sqlite3_bind_double(statement, nPlace, content);
        } else if constexpr (std::is_same_v<T, platform::Timestamp>) {
          return sqlite3_bind_int64(statement, nPlace, content.time_since_epoch().count());
        } else if constexpr (std::is_same_v<T, platform::Text>) {
          return BindText(statement, nPlace, content, keep);
        } else if constexpr (std::is_same_v<T, platform::Bytes>) {
          // A null pointer would bind null.
          return content.empty()
                     ? sqlite3_bind_zeroblob(statement, nPlace, 0)
                     : sqlite3_bind_blob64(statement, nPlace, content.data(), content.size(), keep);
        } else if constexpr (std::is_same_v<T, platform::ObjectPtr>) {
          throw Failure(failure::kTypeMismatch,
                        fmt::format("Parameter {} is an object, which no database can hold: give "
                                    "a plain value.",
                                    nPlace));
          return SQLITE_MISMATCH;
        } else {
          static_assert(std::is_same_v<T, platform::Decimal> || std::is_same_v<T, platform::Date> ||
                        std::is_same_v<T, platform::TimeOfDay> ||
                        std::is_same_v<T, platform::WallTime> || std::is_same_v<T, platform::Guid>);
          return BindText(statement, nPlace, platform::ToText(content), SQLITE_TRANSIENT);
        }
      },
      vtValue.Content());
}

}  // namespace orvane::provider::engines
