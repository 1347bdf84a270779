#include "controls/row_finder.h"

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <utility>

namespace orvane::controls {

namespace {

constexpr std::chrono::milliseconds kSearchSlice(15);
constexpr std::int64_t kCellsBetweenLooks = 1024;

constexpr char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

}  // namespace

TextSought::TextSought(const QString& sText) : m_sText(sText) {
  const bool bAscii = std::ranges::all_of(sText, [](QChar c) { return c.unicode() < 0x80; });
  if (bAscii) m_sFolded = sText.toLower().toStdString();
}

bool TextSought::IsInBytes(std::string_view sBytes) const {
  // Most bytes are not the first one of what is sought, in neither case.
  const char cSmall = m_sFolded.front();
  const char cLarge = static_cast<char>(std::toupper(static_cast<unsigned char>(cSmall)));
  const std::size_t count = m_sFolded.size();
  for (std::size_t n = 0; n + count <= sBytes.size(); ++n) {
    if (sBytes[n] != cSmall && sBytes[n] != cLarge) continue;
    std::size_t same = 1;
    while (same < count && Small(sBytes[n + same]) == m_sFolded[same]) ++same;
    if (same == count) return true;
  }
  return false;
}

bool TextSought::IsIn(const platform::Value& vtValue, const CellFormat& format) const {
  if (vtValue.IsNull()) return false;
  if (!m_sFolded.empty()) {
    if (const auto* text = vtValue.As<platform::Text>()) return IsInBytes(*text);
  }
  return format.Whole(vtValue).contains(m_sText, Qt::CaseInsensitive);
}

RowFinder::RowFinder(const RowModel& model, QObject* parent) : QObject(parent), m_model(model) {
  connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { Cancel(); });
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
  m_search.emplace(Search{std::move(sought), std::move(columns), bForward, std::move(found), begin,
                          cells, false});
  Go();
}

void RowFinder::Cancel() {
  ++m_nRun;
  m_search.reset();
}

void RowFinder::Go() {
  Search& search = *m_search;
  const auto width = static_cast<std::int64_t>(search.columns.size());
  const std::int64_t cells = width * m_model.rowCount();
  const auto end = std::chrono::steady_clock::now() + kSearchSlice;
  while (search.remaining > 0) {
    search.cell += search.bForward ? 1 : -1;
    if (search.cell < 0 || search.cell >= cells) {
      search.cell = search.bForward ? 0 : cells - 1;
      search.bWrapped = true;
    }
    --search.remaining;
    const CellPlace place{static_cast<int>(search.cell / width),
                          search.columns[static_cast<std::size_t>(search.cell % width)]};
    if (search.sought.IsIn(m_model.ValueAt(place.nRow, place.nColumn), m_model.Format())) {
      return End(place);
    }
    if (search.remaining % kCellsBetweenLooks == 0 && std::chrono::steady_clock::now() >= end) {
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
