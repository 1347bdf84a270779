// What the strip beneath a grid's rows says of them: how they stand, why there are no more, and how
// far something has come that is done with them. Used by the grid's window; pure.
#pragma once

#include <QString>

#include "controls/order/arrangement.h"
#include "controls/view/row_model.h"

namespace orvane::controls {

/// Why the rows are not all there are; empty where they are.
QString LimitNotice(const platform::Recordset& rs, const RowModel& model);
/// In which order the rows stand and which of them are seen; empty as they came.
QString ArrangementText(const Arrangement& arrangement, const RowModel& model);
/// How far copying has come; empty where nothing is copied.
QString CopyingText(platform::RowIndex done, platform::RowIndex of);

}  // namespace orvane::controls
