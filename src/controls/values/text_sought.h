// A text that is looked for in the cells of a grid. Used by whoever finds and filters rows; a plain
// value, any thread.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "controls/values/cell_format.h"
#include "platform/ado/recordset.h"

namespace orvane::controls {

class TextSought {
 public:
  explicit TextSought(const QString& sText = {});

  bool IsEmpty() const { return m_sText.isEmpty(); }
  /// Whether the value, as it would be copied, has the text in it, without regard to case.
  bool IsIn(const platform::Value& vtValue, const CellFormat& format) const;
  /// False when no cell of the run has it; true where that is to be looked at.
  bool MayBeIn(const platform::CellRun& run) const;

 private:
  bool IsInBytes(std::string_view sBytes) const;

  QString m_sText;
  std::string m_sSmall;  ///< in small letters where all are ASCII, which is looked for in bytes
  bool m_bMayBeNumber = true;
};

}  // namespace orvane::controls
