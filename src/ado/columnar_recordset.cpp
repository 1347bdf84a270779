#include "ado/columnar_recordset.h"

#include <algorithm>
#include <deque>
#include <unordered_map>

#include "ado/recordset_builder.h"
#include "ado/spilling_memory.h"
#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::ado {

using platform::ColumnIndex;
using platform::Failure;
using platform::RowIndex;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

class ColumnarRecordset::ColumnField final : public platform::Field {
 public:
  ColumnField(const ColumnarRecordset& owner, ColumnIndex column)
      : m_owner(owner), m_column(column) {}

  const Text& Name() const override { return Description().sName; }
  platform::DataType Type() const override { return m_owner.m_rows->TypeOf(m_column); }
  platform::Boolean HoldsTimes() const override {
    return Description().bDays || Field::HoldsTimes();
  }
  platform::Boolean Nullable() const override { return Description().bNullable; }
  platform::TextOrder TextOrder() const override { return Description().textOrder; }
  platform::Boolean NullIsLast() const override { return Description().bNullIsLast; }
  platform::Value Value() const override {
    if (m_owner.Eof()) {
      throw Failure(
          failure::kNoCurrentRow,
          "The field \"" + Name() +
              "\" has no value here: the recordset is behind its last row; move to its first one.");
    }
    return m_owner.ValueAt(m_owner.Position(), m_column);
  }

 private:
  const ColumnDescription& Description() const {
    return m_owner.m_rows->Columns()[static_cast<std::size_t>(m_column)];
  }

  const ColumnarRecordset& m_owner;
  ColumnIndex m_column;
};

class ColumnarRecordset::FieldList final : public platform::Fields {
 public:
  explicit FieldList(const ColumnarRecordset& owner) {
    for (const ColumnDescription& description : owner.m_rows->Columns()) {
      // Of several columns with one name, the name means the first.
      m_byName.try_emplace(platform::FoldCase(description.sName), m_fields.size());
      m_fields.emplace_back(owner, static_cast<ColumnIndex>(m_fields.size()));
    }
  }

  platform::Long Count() const override { return static_cast<platform::Long>(m_fields.size()); }

  platform::Field& Item(const Value& vtIndexName) override {
    if (const Text* sName = vtIndexName.As<Text>()) {
      const auto found = m_byName.find(platform::FoldCase(*sName));
      if (found == m_byName.end()) {
        throw Failure(failure::kItemNotFound,
                      "The recordset has no field \"" + *sName + "\"; name one of its fields.");
      }
      return m_fields[found->second];
    }
    return At(platform::ToLong(vtIndexName));
  }

  ColumnField& At(ColumnIndex column) {
    if (column < 0 || column >= Count()) {
      throw Failure(failure::kItemNotFound,
                    "The recordset has no field number " + std::to_string(column) + ": it has " +
                        std::to_string(Count()) + " of them, counted from 0.");
    }
    return m_fields[static_cast<std::size_t>(column)];
  }

 private:
  std::deque<ColumnField> m_fields;
  std::unordered_map<Text, std::size_t> m_byName;
};

ColumnarRecordset::ColumnarRecordset(std::shared_ptr<const FetchedRows> rows)
    : m_rows(std::move(rows)), m_fields(std::make_unique<FieldList>(*this)) {}

ColumnarRecordset::~ColumnarRecordset() = default;

platform::Fields& ColumnarRecordset::Fields() {
  return *m_fields;
}

void ColumnarRecordset::MoveNext() {
  if (Eof()) {
    throw Failure(
        failure::kNoCurrentRow,
        "There is no next row: the recordset is behind its last row; move to its first one.");
  }
  ++m_position;
}

void ColumnarRecordset::Position(RowIndex row) {
  if (row < 0 || row > RecordCount()) {
    throw Failure(failure::kOutOfRange, "The recordset has no position " + std::to_string(row) +
                                            "; choose one from 0 to " +
                                            std::to_string(RecordCount()) + ".");
  }
  m_position = row;
}

ColumnIndex ColumnarRecordset::FieldCount() const {
  return static_cast<ColumnIndex>(m_rows->Columns().size());
}

const platform::Field& ColumnarRecordset::FieldAt(ColumnIndex column) const {
  return m_fields->At(column);
}

void ColumnarRecordset::RequireRow(RowIndex row) const {
  if (row < 0 || row >= RecordCount()) {
    throw Failure(failure::kNoCurrentRow, "The recordset has no row number " + std::to_string(row) +
                                              ": it has " + std::to_string(RecordCount()) +
                                              " rows, counted from 0.");
  }
}

void ColumnarRecordset::RequireCell(RowIndex row, ColumnIndex column) const {
  if (column < 0 || column >= FieldCount()) m_fields->At(column);
  RequireRow(row);
}

Value ColumnarRecordset::ValueAt(RowIndex row, ColumnIndex column) const {
  if (!m_overlay.Empty()) {
    if (const Value* edit = m_overlay.EditAt(row, column)) return *edit;
  }
  return OriginalAt(row, column);
}

std::optional<std::string_view> ColumnarRecordset::TextAt(RowIndex row, ColumnIndex column) const {
  RequireCell(row, column);
  if (!m_overlay.Empty()) return std::nullopt;
  return m_rows->TextAt(row, column);
}

std::shared_ptr<std::pmr::memory_resource> ColumnarRecordset::Memory() const {
  const RowStorage& storage = m_rows->Storage();
  if (!storage.budget || !storage.bSpill) return Recordset::Memory();
  return std::make_shared<SpillingMemory>(storage.budget);
}

platform::CellRun ColumnarRecordset::RunAt(RowIndex row, ColumnIndex column) const {
  RequireCell(row, column);
  const auto [begin, end] = m_overlay.UntouchedAround(row);
  if (row >= FetchedCount() || begin == end) return {row, row + 1};
  platform::CellRun run = m_rows->RunAt(row, column);
  run.begin = std::max(run.begin, begin);
  run.end = std::min(run.end, end);
  return run;
}

Value ColumnarRecordset::OriginalAt(RowIndex row, ColumnIndex column) const {
  RequireCell(row, column);
  if (!m_overlay.Empty()) {
    if (const Value* stored = m_overlay.StoredAt(row, column)) return *stored;
    if (row >= FetchedCount()) return {};
  }
  return m_rows->ValueAt(row, column);
}

platform::RowState ColumnarRecordset::StateAt(RowIndex row) const {
  RequireRow(row);
  return m_overlay.StateAt(row);
}

platform::Boolean ColumnarRecordset::IsEdited(RowIndex row, ColumnIndex column) const {
  RequireCell(row, column);
  return m_overlay.EditAt(row, column) != nullptr;
}

void ColumnarRecordset::ValueAt(RowIndex row, ColumnIndex column, const Value& vtValue) {
  RequireCell(row, column);
  RequirePlain(vtValue);
  m_overlay.Set(row, column, vtValue);
}

void ColumnarRecordset::Restore(RowIndex row, ColumnIndex column) {
  RequireCell(row, column);
  m_overlay.Restore(row, column);
}

RowIndex ColumnarRecordset::AddNew() {
  if (State() == platform::FetchState::Running) {
    throw Failure(failure::kNotSupported,
                  "No row can be added while rows are still being fetched: wait for the last one, "
                  "or stop the fetch.");
  }
  return m_overlay.AddNew(FetchedCount());
}

void ColumnarRecordset::Delete(RowIndex row) {
  RequireRow(row);
  m_overlay.Delete(row);
}

void ColumnarRecordset::CancelUpdate(RowIndex row) {
  RequireRow(row);
  m_overlay.Cancel(row);
}

void ColumnarRecordset::Accept(RowIndex row, std::span<const Value> stored) {
  RequireRow(row);
  if (!stored.empty()) RequireRowOf(m_rows->Columns().size(), stored);
  m_overlay.Accept(row, stored);
}

}  // namespace orvane::ado
