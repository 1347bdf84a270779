// The recordset: fetched rows in blocks, a current row, and every cell in constant time.
// Made by RowCollector and RecordsetBuilder, used by the snap-in and the grids; one thread at a
// time, while another one may still be fetching. It shares its rows with nobody who would change
// them and knows no connection, so it stays usable when that is closed.
//
// What was fetched never changes. Every reader comes through ValueAt, where edited cells and new
// rows lie over the fetched ones, by row and column number, until they are sent; the fetched values
// then serve as the originals by which an update names its row.
#pragma once

#include <memory>
#include <vector>

#include "ado/fetched_rows.h"
#include "ado/row_overlay.h"

namespace orvane::ado {

class ColumnarRecordset final : public platform::Recordset {
 public:
  explicit ColumnarRecordset(std::shared_ptr<const FetchedRows> rows);
  ~ColumnarRecordset() override;

  platform::Fields& Fields() override;
  platform::Boolean Eof() const override { return m_position == RecordCount(); }
  platform::Boolean Bof() const override { return RecordCount() == 0; }
  void MoveNext() override;
  void MoveFirst() override { m_position = 0; }
  void MoveLast() override { m_position = Bof() ? 0 : RecordCount() - 1; }
  platform::RowIndex Position() const override { return m_position; }
  /// Fails with failure::kOutOfRange outside 0..RecordCount.
  void Position(platform::RowIndex row) override;
  platform::RowIndex RecordCount() const override { return FetchedCount() + m_overlay.NewCount(); }
  platform::ColumnIndex FieldCount() const override;
  /// Fails with failure::kItemNotFound when there is no such column.
  const platform::Field& FieldAt(platform::ColumnIndex column) const override;
  /// Fails with failure::kNoCurrentRow when there is no such row, with kItemNotFound when there
  /// is no such column.
  platform::Value ValueAt(platform::RowIndex row, platform::ColumnIndex column) const override;
  /// Rows that were edited stand alone.
  std::optional<std::string_view> TextAt(platform::RowIndex row,
                                         platform::ColumnIndex column) const override;
  platform::CellRun RunAt(platform::RowIndex row, platform::ColumnIndex column) const override;
  platform::Boolean Truncated() const override {
    return State() == platform::FetchState::Truncated;
  }
  platform::FetchState State() const override { return m_rows->State(); }
  platform::Text FetchRemark() const override { return m_rows->Remark(); }
  platform::Long FetchFailure() const override { return m_rows->FailureNumber(); }
  std::chrono::microseconds Elapsed() const override { return m_rows->Elapsed(); }

  const platform::RowSource& Source() const override { return m_rows->Source(); }
  std::shared_ptr<std::pmr::memory_resource> Memory() const override;

  // The overlay. Rows and columns that do not exist fail as in ValueAt.
  platform::RowIndex FetchedCount() const override { return m_rows->RowCount(); }
  platform::Value OriginalAt(platform::RowIndex row, platform::ColumnIndex column) const override;
  platform::RowState StateAt(platform::RowIndex row) const override;
  platform::Boolean IsEdited(platform::RowIndex row, platform::ColumnIndex column) const override;
  std::vector<platform::RowIndex> PendingRows() const override { return m_overlay.PendingRows(); }
  platform::Boolean IsPending(platform::RowIndex row) const override {
    return m_overlay.IsPending(row);
  }
  platform::RowIndex PendingCount() const override { return m_overlay.PendingCount(); }
  /// Fails with failure::kTypeMismatch for an object, with kNotSupported in a deleted row.
  void ValueAt(platform::RowIndex row, platform::ColumnIndex column,
               const platform::Value& vtValue) override;
  void Restore(platform::RowIndex row, platform::ColumnIndex column) override;
  /// Fails with failure::kNotSupported while rows are fetched: they would take its number.
  platform::RowIndex AddNew() override;
  void Delete(platform::RowIndex row) override;
  void CancelUpdate(platform::RowIndex row) override;
  /// Fails with failure::kInvalidArgument for another number of values than there are columns.
  void Accept(platform::RowIndex row, std::span<const platform::Value> stored = {}) override;

 private:
  class ColumnField;
  class FieldList;

  void RequireRow(platform::RowIndex row) const;
  void RequireCell(platform::RowIndex row, platform::ColumnIndex column) const;

  const std::shared_ptr<const FetchedRows> m_rows;
  std::unique_ptr<FieldList> m_fields;
  RowOverlay m_overlay;
  platform::RowIndex m_position = 0;
};

}  // namespace orvane::ado
