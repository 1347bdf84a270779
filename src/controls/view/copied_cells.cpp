#include "controls/view/copied_cells.h"

#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <functional>

#include "controls/values/value_input.h"
#include "controls/view/copied_data.h"
#include "controls/view/pasted_page.h"

namespace orvane::controls {

using platform::Text;

namespace {

constexpr qsizetype kMostVainCharacters = 100'000'000;

std::optional<CopiedCell> ReadOwnCell(QDataStream& stream) {
  CopiedCell cell;
  quint8 nKind = 0;
  QByteArray text;
  stream >> nKind;
  if (nKind == CopiedText::kNoCell) {
    cell.bGap = true;
    return stream.status() == QDataStream::Ok ? std::optional(cell) : std::nullopt;
  }
  if (nKind >= platform::kValueKinds) return std::nullopt;
  cell.kind = static_cast<platform::ValueKind>(nKind);
  stream >> text;
  if (cell.kind != platform::ValueKind::Null) cell.sText = text.toStdString();
  if (cell.kind == platform::ValueKind::Timestamp) {
    qint64 microseconds = 0;
    stream >> microseconds;
    cell.instant = platform::Timestamp(std::chrono::microseconds(microseconds));
  }
  return stream.status() == QDataStream::Ok ? std::optional(std::move(cell)) : std::nullopt;
}

std::optional<CopiedCells> ReadOwn(const QByteArray& bytes) {
  QDataStream stream(bytes);
  stream.setVersion(QDataStream::Qt_6_0);
  CopiedCells cells;
  qint32 nColumns = 0;
  stream >> nColumns;
  if (nColumns <= 0) return std::nullopt;
  std::size_t nCells = 0;
  while (!stream.atEnd() && nCells <= kMostReadCells) {
    auto& row = cells.emplace_back();
    nCells += static_cast<std::size_t>(nColumns);
    for (qint32 n = 0; n < nColumns; ++n) {
      auto cell = ReadOwnCell(stream);
      if (!cell) return std::nullopt;
      row.push_back(*std::move(cell));
    }
  }
  return cells;
}

/// What stands between quotes from n on, and n behind them; none where the cell does not end there:
/// then they are part of a text that nobody has put between quotes.
/// Every character looked at in vain is taken from the patience, so that no text takes for ever.
std::optional<QString> QuotedCell(QStringView sText, qsizetype& n, qsizetype& nPatience) {
  if (n >= sText.size() || sText[n] != u'"' || nPatience <= 0) return std::nullopt;
  QString sCell;
  for (qsizetype nAt = n + 1; nAt < sText.size(); ++nAt) {
    const bool bQuote = sText[nAt] == u'"';
    const QChar next = nAt + 1 < sText.size() ? sText[nAt + 1] : QChar(u'\n');
    if (bQuote && next != u'"') {
      if (next != u'\t' && next != u'\n' && next != u'\r') return std::nullopt;
      n = nAt + 1;
      return sCell;
    }
    if (bQuote) ++nAt;
    sCell += sText[nAt];
  }
  nPatience -= sText.size() - n;
  return std::nullopt;
}

CopiedCells ReadText(const QString& sText) {
  CopiedCells cells;
  qsizetype n = 0;
  qsizetype nPatience = kMostVainCharacters;
  const auto at = [&](qsizetype nAt) { return nAt < sText.size() ? sText.at(nAt) : QChar(); };
  std::size_t nCells = 0;
  while (n < sText.size() && nCells <= kMostReadCells) {
    auto& row = cells.emplace_back();
    for (bool bMore = true; bMore && nCells <= kMostReadCells; ++nCells) {
      auto quoted = QuotedCell(sText, n, nPatience);
      const bool bQuoted = quoted.has_value();
      QString sCell = std::move(quoted).value_or(QString());
      while (n < sText.size() && at(n) != u'\t' && at(n) != u'\n' && at(n) != u'\r') {
        sCell += at(n++);
      }
      const bool bNull = sCell.isEmpty() && !bQuoted;
      row.push_back({bNull ? std::nullopt : std::optional(sCell.toStdString())});
      bMore = at(n) == u'\t';
      if (bMore) ++n;
    }
    if (at(n) == u'\r') ++n;
    if (at(n) == u'\n') ++n;
  }
  return cells;
}

bool IsBlankText(const QString& sText) {
  return std::ranges::all_of(sText, [](QChar c) { return c.isSpace(); });
}

/// A page cannot tell a cell of blanks from one without anything, a text can.
void FillVoid(CopiedCells& cells, const QString& sText) {
  const auto isVoid = [](const CopiedCell& cell) { return cell.bVoid; };
  const bool bAny =
      std::ranges::any_of(cells, [&](const auto& row) { return std::ranges::any_of(row, isVoid); });
  if (!bAny) return;
  const CopiedCells beside = ReadText(sText);
  if (!std::ranges::equal(cells, beside, std::ranges::equal_to(), &std::vector<CopiedCell>::size,
                          &std::vector<CopiedCell>::size)) {
    return;
  }
  for (std::size_t nRow = 0; nRow < cells.size(); ++nRow) {
    for (std::size_t n = 0; n < cells[nRow].size(); ++n) {
      const auto& text = beside[nRow][n].sText;
      const bool bBlanks = text && !text->empty() && IsBlankText(QString::fromStdString(*text));
      if (cells[nRow][n].bVoid && bBlanks) cells[nRow][n].sText = text;
    }
  }
}

}  // namespace

QByteArray ExactCells(const CopiedText& copied, const zones::TimeZone& zone) {
  const ValueInput input(zone);
  QByteArray bytes;
  QDataStream stream(&bytes, QIODevice::WriteOnly);
  stream.setVersion(QDataStream::Qt_6_0);
  stream << static_cast<qint32>(copied.columns);
  CopiedTextReader cells(copied.sText);
  auto time = copied.times.begin();
  for (const std::uint8_t nKind : copied.kinds) {
    const std::string_view sCell = cells.Next();
    stream << quint8{nKind};
    if (nKind == CopiedText::kNoCell) continue;
    const auto kind = static_cast<platform::ValueKind>(nKind);
    if (kind == platform::ValueKind::Timestamp) {
      stream << QByteArray::fromStdString(input.Shown(*time))
             << qint64{time->time_since_epoch().count()};
      ++time;
    } else if (kind == platform::ValueKind::Object) {
      stream << QByteArray();
    } else {
      stream << QByteArray(sCell.data(), static_cast<qsizetype>(sCell.size()));
    }
  }
  return bytes;
}

std::unique_ptr<QMimeData> CellsOn(const QMimeData& data) {
  auto copy = std::make_unique<QMimeData>();
  if (data.hasFormat(kCellsFormat)) copy->setData(kCellsFormat, data.data(kCellsFormat));
  // What this program has copied is read from its own form, and no other is written for it.
  const auto* copied = dynamic_cast<const CopiedData*>(&data);
  if (copied && copied->IsExact()) return copy;
  if (data.hasHtml()) copy->setHtml(data.html());
  if (data.hasText()) copy->setText(data.text());
  return copy;
}

std::optional<CopiedCells> ReadCells(const QMimeData& data) {
  if (data.hasFormat(kCellsFormat)) {
    if (auto cells = ReadOwn(data.data(kCellsFormat))) return cells;
  }
  if (data.hasHtml()) {
    const QString sPage = data.html();
    if (auto cells = CellsOfPage(sPage)) {
      if (data.hasText()) FillVoid(*cells, data.text());
      return cells;
    }
  }
  if (!data.hasText() || data.text().isEmpty()) return std::nullopt;
  return ReadText(data.text());
}

}  // namespace orvane::controls
