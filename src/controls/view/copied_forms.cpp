#include "controls/view/copied_forms.h"

#include <cmath>

#include "controls/view/pasted_page.h"

namespace orvane::controls {

namespace {

QString InPage(QString sText) {
  return sText.toHtmlEscaped()
      .replace(QLatin1String("\r\n"), QLatin1String("<br>"))
      .replace(u'\n', QLatin1String("<br>"))
      .replace(u'\r', QLatin1String("&#13;"))
      .replace(u'\t', QLatin1String("&#9;"));
}

/// Spreadsheets are told what is a number and what a text, whatever the language they count in: a
/// text of digits would become a number, and 1.5 a day in May.
QString CellOfPage(const platform::Value& vtValue, const QString& sWhole) {
  const auto* number = vtValue.As<double>();
  if (number && !std::isfinite(*number)) return QStringLiteral("<td>%1</td>").arg(sWhole);
  switch (vtValue.Kind()) {
    case platform::ValueKind::Null:
      return QStringLiteral("<td><i></i></td>");
    case platform::ValueKind::Long:
    case platform::ValueKind::LongLong:
    case platform::ValueKind::Double:
    case platform::ValueKind::Decimal:
      return QStringLiteral("<td sdval=\"%1\" sdnum=\"1033;\">%1</td>").arg(sWhole);
    case platform::ValueKind::Text:
      return QStringLiteral("<td sdnum=\"1033;0;@\">") + InPage(sWhole) + QStringLiteral("</td>");
    case platform::ValueKind::Boolean:
    case platform::ValueKind::Timestamp:
    case platform::ValueKind::Date:
    case platform::ValueKind::TimeOfDay:
    case platform::ValueKind::Bytes:
    case platform::ValueKind::Guid:
    case platform::ValueKind::Object:
      break;
  }
  return QStringLiteral("<td>") + InPage(sWhole) + QStringLiteral("</td>");
}

}  // namespace

std::optional<QString> SelectionAs(const exports::WriterOptions& options, const RowModel& model,
                                   const QItemSelection& selection, const std::vector<int>& columns,
                                   qsizetype nMost) {
  const auto& rs = model.Recordset();
  if (!rs) return QString();
  std::vector<platform::ColumnIndex> written(columns.begin(), columns.end());
  const auto writer = exports::MakeRowWriter(options);
  platform::Text sText;
  writer->Begin(*rs, std::move(written), sText);
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
                                       const std::vector<int>& columns, bool bNames,
                                       qsizetype nMost) {
  QString sPage =
      QStringLiteral("<meta charset=\"utf-8\"><table %1>").arg(QLatin1String(kOwnTableMark));
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
        sPage += CellOfPage(vtValue, model.Format().Whole(vtValue));
      }
      sPage += QStringLiteral("</tr>");
      if (sPage.size() > nMost) return std::nullopt;
    }
  }
  return sPage + QStringLiteral("</table>");
}

}  // namespace orvane::controls
