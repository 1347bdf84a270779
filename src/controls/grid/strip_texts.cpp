#include "controls/grid/strip_texts.h"

#include "controls/view/status_strip.h"

namespace orvane::controls {

QString LimitNotice(const platform::Recordset& rs, const RowModel& model) {
  if (!model.AllRowsFit()) {
    return QStringLiteral("First %1 only: a grid holds no more.").arg(RowsText(RowModel::kMaxRows));
  }
  if (rs.State() == platform::FetchState::Stopped) {
    return QString::fromStdString(rs.FetchRemark());
  }
  if (!rs.Truncated()) return {};
  return rs.RecordCount() == 1 ? QStringLiteral("First row only: the row limit was reached.")
                               : QStringLiteral("First %1 only: the row limit was reached.")
                                     .arg(RowsText(rs.RecordCount()));
}

QString ArrangementText(const Arrangement& arrangement, const RowModel& model) {
  QStringList parts;
  if (!arrangement.sort.empty()) {
    QStringList columns;
    for (const SortColumn& column : arrangement.sort) {
      columns << model.ColumnName(column.column) +
                     (column.bAscending ? QStringLiteral(" \u2191") : QStringLiteral(" \u2193"));
    }
    const auto& rs = model.Recordset();
    const bool bAll = !rs || rs->State() == platform::FetchState::Complete;
    QString sWhere = arrangement.bSortedByServer ? QStringLiteral("Sorted by the server")
                     : bAll                      ? QStringLiteral("Sorted here")
                                                 : QStringLiteral("Only the rows here are sorted");
    if (!arrangement.bSortedByServer && rs && TakesServer(arrangement.sort, *rs)) {
      sWhere += QStringLiteral(", texts otherwise than by the server");
    }
    parts << sWhere + QStringLiteral(": ") + columns.join(QStringLiteral(", "));
  }
  if (!arrangement.filters.empty()) {
    parts << QStringLiteral("Filtered here: %1 seen").arg(RowsText(model.Places()));
  }
  return parts.join(QStringLiteral("; "));
}

QString CopyingText(platform::RowIndex done, platform::RowIndex of) {
  if (of == 0) return {};
  return QStringLiteral("Copying rows: %L1 of %L2\u2026")
      .arg(static_cast<qlonglong>(done))
      .arg(static_cast<qlonglong>(of));
}

}  // namespace orvane::controls
