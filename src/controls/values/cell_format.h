// How a cell's value appears in a grid and on the clipboard. What is shown is never read back.
// Used by the row model on the user-interface thread.
#pragma once

#include <QString>
#include <utility>

#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// Name of a column's type as an administrator reads it.
QString TypeName(platform::DataType type);

/// Side on which values of a column of this type stand.
Qt::Alignment AlignmentOf(platform::DataType type);

class CellFormat {
 public:
  explicit CellFormat(zones::TimeZone zone = zones::TimeZone::Utc()) : m_zone(std::move(zone)) {}

  const zones::TimeZone& Zone() const { return m_zone; }
  /// One line: line breaks and other control characters appear as marks, long values are cut and
  /// end in an ellipsis, null is the word NULL (its look tells it from a text of that word).
  QString Shown(const platform::Value& vtValue) const;
  /// The same, a time with so many digits of a second at least.
  QString Shown(const platform::Value& vtValue, int nFraction) const;
  /// The digits of a second that a time needs: 0, 3 or 6; 0 for anything else.
  static int FractionOf(const platform::Value& vtValue);
  /// The whole value; null is the empty text.
  QString Whole(const platform::Value& vtValue) const;
  /// The same as UTF-8; of a text its own bytes.
  platform::Text WholeText(const platform::Value& vtValue) const;
  /// The beginning of a value; the rest takes no memory however long it is.
  struct Part {
    QString sText;
    qsizetype nWhole = 0;  ///< characters of the whole value
  };
  /// So many characters of the whole value at most.
  Part Beginning(const platform::Value& vtValue, qsizetype nCharacters) const;
  /// Numbers right, Booleans in the middle, everything else left; null follows the column.
  static Qt::Alignment Alignment(const platform::Value& vtValue, platform::DataType column);

 private:
  zones::TimeZone m_zone;
};

}  // namespace orvane::controls
