#include "ado/fetched_rows.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <new>

#include "ado/row_receiver.h"

namespace orvane::ado {

using platform::ColumnIndex;
using platform::RowIndex;

FetchedRows::FetchedRows(std::vector<ColumnDescription> columns, RowStorage storage,
                         Clock::time_point start)
    : m_columns(std::move(columns)),
      m_storage(std::move(storage)),
      m_start(start),
      m_kindsSeen(m_columns.size()) {}

FetchedRows::~FetchedRows() {
  if (m_storage.budget) m_storage.budget->GiveBack(m_bytes);
}

std::pair<std::size_t, std::size_t> FetchedRows::PlaceOf(std::size_t block) {
  const auto part = static_cast<std::size_t>(std::bit_width(block / kFirstPart + 1)) - 1;
  return {part, block - kFirstPart * ((std::size_t{1} << part) - 1)};
}

const FetchedRows::Block& FetchedRows::BlockAt(std::size_t block) const {
  const auto [part, index] = PlaceOf(block);
  return m_parts[part][index];
}

void FetchedRows::Append(std::span<const Column> block) {
  if (block.empty() || block.front().RowCount() == 0) return;
  assert(block.front().RowCount() <= static_cast<RowIndex>(kRowsInBlock));
  const std::size_t number = m_blockCount.load(std::memory_order_relaxed);
  const auto [part, index] = PlaceOf(number);
  if (!m_parts[part]) m_parts[part] = std::make_unique<Block[]>(kFirstPart << part);
  Block& next = m_parts[part][index];
  next.firstRow = m_rowCount.load(std::memory_order_relaxed);
  Hold(block, next);
  for (std::size_t i = 0; i < block.size(); ++i) {
    m_kindsSeen[i].fetch_or(block[i].KindsSeen(), std::memory_order_relaxed);
  }
  m_blockCount.store(number + 1, std::memory_order_release);
  m_rowCount.store(next.firstRow + block.front().RowCount(), std::memory_order_release);
}

void FetchedRows::Hold(std::span<const Column> columns, Block& block) {
  const std::size_t bytes = RowBlock::BytesOf(columns);
  if (!m_storage.budget || m_storage.budget->Take(bytes)) {
    try {
      block.memory = std::make_unique_for_overwrite<std::byte[]>(bytes);
    } catch (...) {
      if (m_storage.budget) m_storage.budget->GiveBack(bytes);
      throw;
    }
    m_bytes += bytes;
    RowBlock::Pack(columns, block.memory.get());
    block.bytes = block.memory.get();
    return;
  }
  if (!m_storage.bSpill) throw std::bad_alloc();
  if (!m_spill) m_spill.emplace();
  m_packed.resize(bytes);
  RowBlock::Pack(columns, m_packed.data());
  block.bytes = m_spill->Write(m_packed);
  // A few large values are no reason to keep their room.
  if (m_packed.size() > kBytesInBlock * 4) m_packed = {};
}

void FetchedRows::End(platform::FetchState state, platform::Text sRemark, platform::Long lFailure) {
  m_sRemark = std::move(sRemark);
  m_lFailure = lFailure;
  End(state, std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - m_start));
}

void FetchedRows::End(platform::FetchState state, std::chrono::microseconds elapsed) {
  m_elapsed = elapsed;
  m_packed = {};
  m_state.store(state, std::memory_order_release);
}

// No block has more than kRowsInBlock rows, so the row is in none before the one where it would be
// if all had as many; from there on the search widens.
std::size_t FetchedRows::BlockNumberOf(RowIndex row) const {
  const std::size_t count = m_blockCount.load(std::memory_order_acquire);
  std::size_t low = static_cast<std::size_t>(row) / kRowsInBlock;
  std::size_t step = 1;
  while (low + step < count && BlockAt(low + step).firstRow <= row) {
    low += step;
    step *= 2;
  }
  std::size_t high = std::min(low + step, count);
  while (high - low > 1) {
    const std::size_t middle = low + (high - low) / 2;
    (BlockAt(middle).firstRow <= row ? low : high) = middle;
  }
  return low;
}

platform::Value FetchedRows::ValueAt(RowIndex row, ColumnIndex column) const {
  const Block& block = BlockAt(BlockNumberOf(row));
  return RowBlock(block.bytes)
      .ValueAt(static_cast<std::size_t>(row - block.firstRow), static_cast<std::size_t>(column));
}

std::optional<std::string_view> FetchedRows::TextAt(RowIndex row, ColumnIndex column) const {
  const Block& block = BlockAt(BlockNumberOf(row));
  return RowBlock(block.bytes)
      .TextAt(static_cast<std::size_t>(row - block.firstRow), static_cast<std::size_t>(column));
}

platform::CellRun FetchedRows::RunAt(RowIndex row, ColumnIndex column) const {
  // Asked first, so that no block that is counted has its end behind them.
  const RowIndex rows = RowCount();
  const std::size_t number = BlockNumberOf(row);
  const bool bLast = number + 1 >= m_blockCount.load(std::memory_order_acquire);
  const Block& held = BlockAt(number);
  const RowBlock block(held.bytes);
  const auto place = static_cast<std::size_t>(column);
  return {held.firstRow, bLast ? rows : BlockAt(number + 1).firstRow, block.KindOf(place),
          block.TextsOf(place)};
}

platform::DataType FetchedRows::TypeOf(ColumnIndex column) const {
  const auto place = static_cast<std::size_t>(column);
  if (m_columns[place].type != platform::DataType::Empty) return m_columns[place].type;
  return FittingType(m_kindsSeen[place].load(std::memory_order_relaxed));
}

platform::Text FetchedRows::Remark() const {
  return State() == platform::FetchState::Stopped ? m_sRemark : platform::Text();
}

platform::Long FetchedRows::FailureNumber() const {
  return State() == platform::FetchState::Stopped ? m_lFailure : 0;
}

std::chrono::microseconds FetchedRows::Elapsed() const {
  if (State() != platform::FetchState::Running) return m_elapsed;
  return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - m_start);
}

}  // namespace orvane::ado
