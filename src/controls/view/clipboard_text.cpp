#include "controls/view/clipboard_text.h"

#include <algorithm>
#include <set>
#include <vector>

namespace orvane::controls {

namespace {

QString InCell(QString sText) {
  const auto needsQuotes = [](QChar c) {
    return c == u'\t' || c == u'\n' || c == u'\r' || c == u'"';
  };
  if (std::ranges::none_of(sText, needsQuotes)) return sText;
  return u'"' + sText.replace(QLatin1String("\""), QLatin1String("\"\"")) + u'"';
}

}  // namespace

std::vector<int> SelectedColumns(const QItemSelection& selection) {
  std::set<int> columns;
  for (const QItemSelectionRange& range : selection) {
    for (int n = range.left(); n <= range.right(); ++n) columns.insert(n);
  }
  return {columns.begin(), columns.end()};
}

std::vector<std::pair<int, int>> RowSpans(const QItemSelection& selection) {
  std::vector<std::pair<int, int>> spans;
  for (const QItemSelectionRange& range : selection) {
    spans.emplace_back(range.top(), range.bottom());
  }
  std::ranges::sort(spans);
  std::vector<std::pair<int, int>> merged;
  for (const auto& span : spans) {
    if (!merged.empty() && span.first <= merged.back().second + 1) {
      merged.back().second = std::max(merged.back().second, span.second);
    } else {
      merged.push_back(span);
    }
  }
  return merged;
}

platform::RowIndex SelectedRows(const QItemSelection& selection) {
  platform::RowIndex rows = 0;
  for (const auto& [nFirst, nLast] : RowSpans(selection)) rows += nLast - nFirst + 1;
  return rows;
}

std::optional<QString> ClipboardText(const RowModel& model, const QItemSelection& selection,
                                     const std::vector<int>& columns, bool bNames,
                                     qsizetype nMost) {
  QString sText;
  if (bNames) {
    QChar separator;
    for (const int nColumn : columns) {
      if (!separator.isNull()) sText += separator;
      sText += InCell(model.ColumnName(nColumn));
      separator = u'\t';
    }
    sText += u'\n';
  }
  for (const auto& [nFirst, nLast] : RowSpans(selection)) {
    for (int nRow = nFirst; nRow <= nLast; ++nRow) {
      QChar separator;
      for (const int nColumn : columns) {
        if (!separator.isNull()) sText += separator;
        separator = u'\t';
        const bool bSelected = std::ranges::any_of(selection, [&](const auto& range) {
          return nRow >= range.top() && nRow <= range.bottom() && nColumn >= range.left() &&
                 nColumn <= range.right();
        });
        if (!bSelected) continue;
        const platform::Value vtValue = model.ValueAt(nRow, nColumn);
        const QString sWhole = model.Format().Whole(vtValue);
        // Null is an empty cell, so the empty text has to be something.
        sText += sWhole.isEmpty() && !vtValue.IsNull() ? QStringLiteral("\"\"") : InCell(sWhole);
      }
      sText += u'\n';
      if (sText.size() > nMost) return std::nullopt;
    }
  }
  return sText;
}

}  // namespace orvane::controls
