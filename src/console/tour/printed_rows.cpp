#include "console/tour/printed_rows.h"

#include <QAbstractItemModel>
#include <algorithm>
#include <ostream>
#include <vector>

namespace orvane::console {

namespace {

std::vector<QStringList> ShownLines(const QAbstractItemModel& model, int nMostRows) {
  std::vector<QStringList> lines(1);
  for (int c = 0; c < model.columnCount(); ++c) {
    lines[0] << model.headerData(c, Qt::Horizontal).toString();
  }
  for (int r = 0; r < std::min(model.rowCount(), nMostRows); ++r) {
    auto& line = lines.emplace_back();
    for (int c = 0; c < model.columnCount(); ++c) line << model.index(r, c).data().toString();
  }
  return lines;
}

}  // namespace

void PrintRows(std::ostream& out, const QAbstractItemModel& model, int nMostRows) {
  const auto lines = ShownLines(model, nMostRows);
  std::vector<qsizetype> widths(static_cast<std::size_t>(model.columnCount()));
  for (const auto& line : lines) {
    for (std::size_t n = 0; n < widths.size(); ++n) {
      widths[n] = std::max(widths[n], line[static_cast<qsizetype>(n)].size());
    }
  }
  for (const auto& line : lines) {
    QString sLine = " ";
    for (std::size_t n = 0; n < widths.size(); ++n) {
      sLine +=
          ' ' + line[static_cast<qsizetype>(n)].leftJustified(static_cast<int>(widths[n])) + ' ';
    }
    while (sLine.endsWith(' ')) sLine.chop(1);
    out << sLine.toStdString() << '\n';
  }
}

}  // namespace orvane::console
