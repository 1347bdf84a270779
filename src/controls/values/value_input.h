// Reads what is typed into a cell as a value of its column, and writes a value so that it can be
// typed again: exact in both directions, unlike what is shown in a cell.
// Used by the editors, by pasting and by cell queries; a plain value, any thread.
#pragma once

#include <utility>

#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// What a column takes: values of its type, and on some servers texts beside them, such as
/// "infinity" among dates (see platform::ReadBeyond).
struct ColumnTakes {
  // NOLINTNEXTLINE(google-explicit-constructor): most columns take values of their type only.
  ColumnTakes(platform::DataType typeOfColumn = platform::DataType::Empty) : type(typeOfColumn) {}
  explicit ColumnTakes(const platform::Field& field)
      : type(field.Type()), bBeyond(field.TextOrder() == platform::TextOrder::BeyondValues) {}

  platform::DataType type;
  bool bBeyond = false;
};

class ValueInput {
 public:
  explicit ValueInput(zones::TimeZone zone = zones::TimeZone::Utc()) : m_zone(std::move(zone)) {}

  /// The text from which editing begins. Null is the empty text; a time that the zone's clocks show
  /// twice has its distance from UTC behind it, so that it says which of both it is.
  platform::Text Shown(const platform::Value& vtValue) const;

  /// The value that the text stands for in a column of the type. What is shown for vtCurrent gives
  /// vtCurrent itself; another text goes by the type, or where that cannot read it by the kind of
  /// vtCurrent, since an engine may keep other kinds in a column. The empty text is null where it
  /// is no text. Fails with kTypeMismatch or kOverflow and a sentence for who typed it.
  platform::Value Read(const platform::Text& sText, const ColumnTakes& takes,
                       const platform::Value& vtCurrent = {}) const;
  /// The same of a text that Shown gave for a value of the kind, in another cell: in a column of
  /// any type it is that value again, and a column of decimals takes any number that one of them
  /// holds.
  platform::Value ReadCopied(const platform::Text& sText, platform::ValueKind kindOfCopied,
                             const ColumnTakes& takes, const platform::Value& vtCurrent) const;

 private:
  platform::Value ReadAs(platform::ValueKind kind, const platform::Text& sText) const;

  zones::TimeZone m_zone;
};

/// The kind in which a column of the type keeps its values; Null for a column of any type.
platform::ValueKind KindOf(platform::DataType type);

}  // namespace orvane::controls
