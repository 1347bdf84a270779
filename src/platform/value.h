// The one value type: a closed variant of everything a cell, a property or a bag entry can hold.
// Used by every module; immutable in practice, copied freely.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/object.h"
#include "platform/types.h"

namespace orvane::platform {

/// The absent value. All nulls are equal to each other.
struct Null {
  friend bool operator==(const Null&, const Null&) = default;
};

/// Exact decimal number as canonical text: optional '-', digits, optional '.' and digits.
struct Decimal {
  Text sDigits;
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// A point in time: microseconds since 1970-01-01 00:00:00 UTC.
using Timestamp = std::chrono::sys_time<std::chrono::microseconds>;
/// A calendar day without a time zone.
using Date = std::chrono::sys_days;
/// What clocks somewhere show, without a word of where: microseconds since 1970-01-01 00:00:00 of
/// those clocks. Which moment it is nobody can tell.
using WallTime = std::chrono::local_time<std::chrono::microseconds>;
/// Time of day: microseconds since midnight.
using TimeOfDay = std::chrono::microseconds;
using Bytes = std::vector<std::byte>;

/// A 128-bit identity in text order (the order in which it is written).
struct Guid {
  std::array<std::uint8_t, 16> bytes{};
  friend bool operator==(const Guid&, const Guid&) = default;
};

/// What a Value holds; the order is that of the variant's alternatives.
enum class ValueKind : std::uint8_t {
  Null,
  Boolean,
  Long,
  LongLong,
  Double,
  Decimal,
  Text,
  Timestamp,
  Date,
  TimeOfDay,
  Bytes,
  Guid,
  Object,
  WallTime,
};

/// The kinds that there are.
constexpr std::size_t kValueKinds = 14;

/// A value of one of the kinds of ValueKind. Equality compares kind and content; objects
/// compare by identity.
class Value {
 public:
  using Storage = std::variant<Null, bool, std::int32_t, std::int64_t, double, Decimal, Text,
                               Timestamp, Date, TimeOfDay, Bytes, Guid, ObjectPtr, WallTime>;

  // NOLINTBEGIN(google-explicit-constructor): a value is made from whatever it can hold.
  Value() = default;
  Value(Null) {}
  Value(bool bValue) : m_storage(bValue) {}
  Value(std::int32_t lValue) : m_storage(lValue) {}
  Value(std::int64_t llValue) : m_storage(llValue) {}
  Value(double dValue) : m_storage(dValue) {}
  Value(Decimal decimal) : m_storage(std::move(decimal)) {}
  Value(Text sValue) : m_storage(std::move(sValue)) {}
  Value(const char* sValue) : m_storage(Text(sValue)) {}
  Value(Timestamp timestamp) : m_storage(timestamp) {}
  Value(WallTime wall) : m_storage(wall) {}
  Value(Date date) : m_storage(date) {}
  Value(TimeOfDay time) : m_storage(time) {}
  Value(Bytes bytes) : m_storage(std::move(bytes)) {}
  Value(Guid guid) : m_storage(guid) {}
  template <class T>
  Value(std::shared_ptr<T> object) : m_storage(ObjectPtr(std::move(object))) {}
  // NOLINTEND(google-explicit-constructor)

  ValueKind Kind() const noexcept { return static_cast<ValueKind>(m_storage.index()); }
  bool IsNull() const noexcept { return Kind() == ValueKind::Null; }
  /// The content if it is a T, otherwise nullptr; owned by this value.
  template <class T>
  const T* As() const noexcept {
    return std::get_if<T>(&m_storage);
  }
  const Storage& Content() const noexcept { return m_storage; }

  friend bool operator==(const Value&, const Value&) = default;

 private:
  // Kind() is the place of the content in the storage; both lists must agree, name by name.
  template <ValueKind kind, class T>
  static constexpr bool kHolds =
      std::is_same_v<std::variant_alternative_t<static_cast<std::size_t>(kind), Storage>, T>;
  static_assert(std::variant_size_v<Storage> == kValueKinds);
  static_assert(static_cast<std::size_t>(ValueKind::WallTime) + 1 == kValueKinds);
  static_assert(kHolds<ValueKind::Null, platform::Null> && kHolds<ValueKind::Boolean, bool> &&
                kHolds<ValueKind::Long, std::int32_t> &&
                kHolds<ValueKind::LongLong, std::int64_t> && kHolds<ValueKind::Double, double> &&
                kHolds<ValueKind::Decimal, platform::Decimal> &&
                kHolds<ValueKind::Text, platform::Text> &&
                kHolds<ValueKind::Timestamp, platform::Timestamp> &&
                kHolds<ValueKind::Date, platform::Date> &&
                kHolds<ValueKind::TimeOfDay, platform::TimeOfDay> &&
                kHolds<ValueKind::Bytes, platform::Bytes> &&
                kHolds<ValueKind::Guid, platform::Guid> && kHolds<ValueKind::Object, ObjectPtr> &&
                kHolds<ValueKind::WallTime, platform::WallTime>);

  Storage m_storage;
};

}  // namespace orvane::platform
