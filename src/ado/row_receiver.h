// What takes the rows of a statement while they are fetched, block by block.
// Implemented by the connection layer, and by providers on the way to it; called by the provider on
// the thread of the statement, one call at a time.
#pragma once

#include <atomic>
#include <span>
#include <vector>

#include "ado/column.h"
#include "ado/column_description.h"

namespace orvane::ado {

/// More rows than that are in no block.
inline constexpr std::size_t kRowsInBlock = 4096;
/// A block that has taken so many bytes of texts is handed over with the row that is in hand.
inline constexpr std::size_t kBytesInBlock = std::size_t{1} << 20;

class RowReceiver {
 public:
  RowReceiver() = default;
  RowReceiver(const RowReceiver&) = delete;
  RowReceiver& operator=(const RowReceiver&) = delete;
  virtual ~RowReceiver() = default;

  /// Comes before everything else, from whoever has read the statement and knows.
  virtual void Source(platform::RowSource /*source*/) {}
  /// Comes first, once, before the statement runs; without columns when it has no rows. bReads
  /// tells that the statement changes nothing.
  virtual void Begin(std::vector<ColumnDescription> columns, platform::Boolean bReads) = 0;
  /// Takes rows, equally many in each column and kRowsInBlock at most. The columns are whatever the
  /// callee has made of them afterwards; the caller clears them. What it throws ends the statement.
  virtual void Take(std::span<Column> block) = 0;
  /// Comes last, when all rows were taken. bTruncated tells that the row limit kept rows back.
  virtual void End(platform::Boolean bTruncated) = 0;
  /// Set, from any thread, when the rows at hand are wanted although they make no whole block; who
  /// hands them over clears it. Lives as long as the receiver.
  virtual std::atomic<bool>& Wanted() = 0;
};

}  // namespace orvane::ado
