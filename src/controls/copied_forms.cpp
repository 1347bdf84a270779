#include "controls/copied_forms.h"

namespace orvane::controls {

namespace {

QString InPage(QString sText) {
  return sText.toHtmlEscaped()
      .replace(QLatin1String("\r\n"), QLatin1String("<br>"))
      .replace(u'\n', QLatin1String("<br>"))
      .replace(u'\t', QLatin1String("&#9;"));
}

}  // namespace

std::optional<QString> SelectionAs(const exports::WriterOptions& options, const RowModel& model,
                                   const QItemSelection& selection, qsizetype nMost) {
  const auto& rs = model.Recordset();
  if (!rs) return QString();
  std::vector<platform::ColumnIndex> columns;
  for (const int nColumn : SelectedColumns(selection)) columns.push_back(nColumn);
  const auto writer = exports::MakeRowWriter(options);
  platform::Text sText;
  writer->Begin(*rs, std::move(columns), sText);
  for (const auto& [nFirst, nLast] : RowSpans(selection)) {
    for (int nPlace = nFirst; nPlace <= nLast; ++nPlace) {
      if (model.IsEmptyRow(nPlace)) continue;
      writer->Row(*rs, model.RecordRow(nPlace), sText);
      if (static_cast<qsizetype>(sText.size()) > nMost) return std::nullopt;
    }
  }
  return QString::fromStdString(sText);
}

std::optional<QString> SelectionAsPage(const RowModel& model, const QItemSelection& selection,
                                       bool bNames, qsizetype nMost) {
  QString sPage = QStringLiteral("<meta charset=\"utf-8\"><table>");
  const std::vector<int> columns = SelectedColumns(selection);
  if (bNames) {
    sPage += QStringLiteral("<tr>");
    for (const int nColumn : columns) {
      sPage += QStringLiteral("<th>%1</th>").arg(InPage(model.ColumnName(nColumn)));
    }
    sPage += QStringLiteral("</tr>");
  }
  for (const auto& [nFirst, nLast] : RowSpans(selection)) {
    for (int nPlace = nFirst; nPlace <= nLast; ++nPlace) {
      sPage += QStringLiteral("<tr>");
      for (const int nColumn : columns) {
        if (!selection.contains(model.index(nPlace, nColumn))) {
          sPage += QStringLiteral("<td></td>");
          continue;
        }
        const platform::Value vtValue = model.ValueAt(nPlace, nColumn);
        sPage += vtValue.IsNull() ? QStringLiteral("<td><i></i></td>")
                                  : QStringLiteral("<td>") + InPage(model.Format().Whole(vtValue)) +
                                        QStringLiteral("</td>");
      }
      sPage += QStringLiteral("</tr>");
      if (sPage.size() > nMost) return std::nullopt;
    }
  }
  return sPage + QStringLiteral("</table>");
}

}  // namespace orvane::controls
