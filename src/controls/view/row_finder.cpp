#include "controls/view/row_finder.h"

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <limits>
#include <utility>

namespace orvane::controls {

namespace {

constexpr std::chrono::milliseconds kSearchSlice(15);
constexpr int kCellsBetweenLooks = 64;
constexpr std::size_t kBytesBetweenLooks = 256 << 10;

/// What is to be looked through in it, where that may be much.
std::size_t BytesIn(const platform::Value& vtValue) {
  if (const auto* text = vtValue.As<platform::Text>()) return text->size();
  const auto* bytes = vtValue.As<platform::Bytes>();
  return bytes ? bytes->size() : 0;
}

}  // namespace

RowFinder::RowFinder(const RowModel& model, QObject* parent) : QObject(parent), m_model(model) {
  connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
    if (!Busy()) return;
    Cancel();
    if (m_lost) m_lost();
  });
}

void RowFinder::Find(TextSought sought, std::vector<int> columns, CellPlace from, bool bForward,
                     Found found) {
  Cancel();
  const auto width = static_cast<std::int64_t>(columns.size());
  const std::int64_t cells = width * m_model.rowCount();
  if (cells == 0 || sought.IsEmpty()) return found(std::nullopt, false);
  const auto column = std::ranges::find(columns, from.nColumn);
  const std::int64_t begin =
      from.nRow < 0 ? (bForward ? -1 : 0) : from.nRow * width + (column - columns.begin()) % width;
  const std::size_t count = columns.size();
  m_search.emplace(Search{std::move(sought), std::move(columns), bForward, std::move(found), begin,
                          cells, false, std::vector<Runs>(count)});
  Go();
}

void RowFinder::Cancel() {
  ++m_nRun;
  m_search.reset();
}

RowFinder::Run RowFinder::RunOf(platform::RowIndex row, std::size_t column) {
  Runs& seen = m_search->seen[column];
  const auto next = seen.upper_bound(row);
  if (next != seen.begin() && row < std::prev(next)->second.end) return std::prev(next)->second;
  const platform::CellRun cells = m_model.Recordset()->RunAt(row, m_search->columns[column]);
  m_search->bytes += cells.texts.size();
  const Run run{cells.begin, cells.end, m_search->sought.MayBeIn(cells)};
  // Of rows that stand alone nothing is saved by remembering them.
  if (run.end - run.begin > 1) seen.insert_or_assign(run.begin, run);
  return run;
}

bool RowFinder::IsAt(const CellPlace& place, std::size_t column) {
  if (m_model.IsEmptyRow(place.nRow)) return false;
  if (!RunOf(m_model.RecordRow(place.nRow), column).bMay) return false;
  const platform::Value vtValue = m_model.ValueAt(place.nRow, place.nColumn);
  m_search->bytes += BytesIn(vtValue);
  return m_search->sought.IsIn(vtValue, m_model.Format());
}

// Whole rows, from that one on, which need not be looked at.
std::int64_t RowFinder::RowsToPass(int nRow) {
  if (!m_model.IsAsFetched() || m_model.IsEmptyRow(nRow)) return 0;
  const platform::RowIndex row = nRow;
  auto rows = std::numeric_limits<platform::RowIndex>::max();
  for (std::size_t column = 0; column < m_search->columns.size(); ++column) {
    const Run run = RunOf(row, column);
    if (run.bMay) return 0;
    rows = std::min(rows, m_search->bForward ? run.end - row : row - run.begin + 1);
  }
  return rows;
}

void RowFinder::Go() {
  Search& search = *m_search;
  const auto width = static_cast<std::int64_t>(search.columns.size());
  const std::int64_t cells = width * m_model.rowCount();
  const auto end = std::chrono::steady_clock::now() + kSearchSlice;
  int nLooked = 0;
  search.bytes = 0;
  std::size_t bytesToLook = kBytesBetweenLooks;
  const auto isOver = [&] {
    if (search.bytes >= kMostBytesInSlice) return true;
    const bool bMany = search.bytes >= bytesToLook;
    if (++nLooked % kCellsBetweenLooks != 0 && !bMany) return false;
    bytesToLook = search.bytes + kBytesBetweenLooks;
    return std::chrono::steady_clock::now() >= end;
  };
  while (search.remaining > 0) {
    search.cell += search.bForward ? 1 : -1;
    if (search.cell < 0 || search.cell >= cells) {
      search.cell = search.bForward ? 0 : cells - 1;
      search.bWrapped = true;
    }
    --search.remaining;
    const auto column = static_cast<std::size_t>(search.cell % width);
    const CellPlace place{static_cast<int>(search.cell / width), search.columns[column]};
    const bool bRowBegins = column == (search.bForward ? 0 : static_cast<std::size_t>(width - 1));
    if (const std::int64_t rows = bRowBegins ? RowsToPass(place.nRow) : 0; rows > 0) {
      // This cell is counted already, and the next one is the first behind them.
      const std::int64_t passed = std::min(rows * width - 1, search.remaining);
      search.cell += search.bForward ? passed : -passed;
      search.remaining -= passed;
    } else if (IsAt(place, column)) {
      return End(place);
    }
    if (isOver()) {
      QTimer::singleShot(0, this, [this, nRun = m_nRun] {
        if (nRun == m_nRun) Go();
      });
      return;
    }
  }
  End(std::nullopt);
}

void RowFinder::End(std::optional<CellPlace> cell) {
  ++m_nRun;
  const Search search = *std::exchange(m_search, std::nullopt);
  search.found(cell, search.bWrapped);
}

}  // namespace orvane::controls
