// What the rows of a grid must hold to be seen: a condition a column, as typed into the row beneath
// the names. Used by the arranger of rows and by that row; a plain value, any thread.
#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "controls/values/cell_format.h"
#include "controls/values/text_sought.h"
#include "controls/values/value_input.h"
#include "platform/ado/recordset.h"

namespace orvane::controls {

class ColumnFilter {
 public:
  /// Reads a condition: "null", "not null"; "=", "<>", "<", "<=", ">", ">=" with a value; two
  /// values with ".." between them, both included; any other text is to stand in what the cell
  /// shows, without regard to case. A text as a value may stand between quotes, and two quotes
  /// alone are the empty text. Fails with a sentence when a value is none of the column's.
  static ColumnFilter Read(const QString& sText, platform::ColumnIndex column,
                           const ColumnTakes& takes, const CellFormat& format);
  /// The cells with just this value, null among them; told as the format has it.
  static ColumnFilter Equal(platform::ColumnIndex column, const platform::Value& vtValue,
                            const CellFormat& format = CellFormat());

  /// Texts are compared in that order, which is their column's.
  void Order(platform::TextOrder order) { m_order = order; }
  platform::ColumnIndex Column() const { return m_column; }
  bool Holds(const platform::Value& vtValue, const CellFormat& format) const;
  /// The filter as it is typed; of Equal what the value would be typed as.
  const QString& Text() const { return m_sText; }

 private:
  enum class Kind : std::uint8_t { Contains, Null, NotNull, Equal, Unequal, Within };

  Kind m_kind = Kind::Contains;
  platform::ColumnIndex m_column = 0;
  platform::TextOrder m_order = platform::TextOrder::Bytes;
  QString m_sText;
  TextSought m_contained;
  platform::Value m_vtFrom;  ///< null has no bound
  platform::Value m_vtTo;
  bool m_bFromIncluded = true;
  bool m_bToIncluded = true;
};

/// Less than 0, 0 or more than 0, in the order in which rows are sorted.
int CompareValues(const platform::Value& vtOne, const platform::Value& vtOther,
                  platform::TextOrder texts = platform::TextOrder::Bytes);

}  // namespace orvane::controls
