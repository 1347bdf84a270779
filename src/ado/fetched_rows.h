// The rows of a statement as they were fetched, in blocks that never change once they are here. One
// thread appends; meanwhile any other reads what was counted before, without a lock.
// Shared by the recordset that shows the rows and whoever fetches them.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <span>

#include "ado/column_description.h"
#include "ado/memory_budget.h"
#include "ado/row_block.h"
#include "ado/spill_file.h"

namespace orvane::ado {

/// Where rows are held.
struct RowStorage {
  std::shared_ptr<MemoryBudget> budget{};  ///< none bounds nothing
  /// Rows beyond the budget go into a temporary file; otherwise they fail with std::bad_alloc.
  platform::Boolean bSpill = false;
};

class FetchedRows {
 public:
  /// Elapsed counts from the start.
  FetchedRows(std::vector<ColumnDescription> columns, RowStorage storage,
              std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now());
  FetchedRows(const FetchedRows&) = delete;
  FetchedRows& operator=(const FetchedRows&) = delete;
  ~FetchedRows();

  /// Whose rows these are; set before anybody else looks.
  void Source(platform::RowSource source) { m_source = std::move(source); }
  const platform::RowSource& Source() const { return m_source; }
  /// Adds rows, equally many in each column. Fails with failure::kStorage when the temporary file
  /// cannot take them; then those before stay.
  void Append(std::span<const Column> block);
  /// No more rows come. Remark and number of the failure are those of a stopped fetch.
  void End(platform::FetchState state, platform::Text sRemark = {}, platform::Long lFailure = 0);
  /// As End, with a time that was measured elsewhere.
  void End(platform::FetchState state, std::chrono::microseconds elapsed);

  const std::vector<ColumnDescription>& Columns() const { return m_columns; }
  platform::RowIndex RowCount() const { return m_rowCount.load(std::memory_order_acquire); }
  /// The row must be below RowCount, the column one of the columns.
  platform::Value ValueAt(platform::RowIndex row, platform::ColumnIndex column) const;
  /// The row and the column likewise; as of a RowBlock.
  std::optional<std::string_view> TextAt(platform::RowIndex row,
                                         platform::ColumnIndex column) const;
  /// The row and the column likewise.
  platform::CellRun RunAt(platform::RowIndex row, platform::ColumnIndex column) const;
  /// As described, or the type that fits the values that have come.
  platform::DataType TypeOf(platform::ColumnIndex column) const;
  platform::FetchState State() const { return m_state.load(std::memory_order_acquire); }
  platform::Text Remark() const;
  platform::Long FailureNumber() const;
  std::chrono::microseconds Elapsed() const;
  const RowStorage& Storage() const { return m_storage; }
  /// Memory that the rows take; what is in the temporary file takes none.
  std::size_t Bytes() const { return m_bytes; }

 private:
  using Clock = std::chrono::steady_clock;

  struct Block {
    platform::RowIndex firstRow = 0;
    const std::byte* bytes = nullptr;
    std::unique_ptr<std::byte[]> memory{};  // of a block on the heap
  };

  // The blocks stand in parts, each twice as long as the one before, which never move.
  static constexpr std::size_t kFirstPart = 16;
  static constexpr std::size_t kParts = 48;
  static std::pair<std::size_t, std::size_t> PlaceOf(std::size_t block);
  const Block& BlockAt(std::size_t block) const;
  std::size_t BlockNumberOf(platform::RowIndex row) const;
  void Hold(std::span<const Column> columns, Block& block);

  const std::vector<ColumnDescription> m_columns;
  const RowStorage m_storage;
  platform::RowSource m_source;
  const Clock::time_point m_start;
  std::array<std::unique_ptr<Block[]>, kParts> m_parts;
  std::atomic<std::size_t> m_blockCount{0};
  std::atomic<platform::RowIndex> m_rowCount{0};
  std::vector<std::atomic<std::uint16_t>> m_kindsSeen;  // by column
  std::atomic<platform::FetchState> m_state{platform::FetchState::Running};
  platform::Text m_sRemark;                // written before the state
  platform::Long m_lFailure = 0;           // likewise
  std::chrono::microseconds m_elapsed{0};  // likewise
  std::size_t m_bytes = 0;                 // the writer's
  std::optional<SpillFile> m_spill;        // the writer's
  std::vector<std::byte> m_packed;         // the writer's: what goes into the file next
};

}  // namespace orvane::ado
