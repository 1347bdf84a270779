#include "controls/statements/row_changes.h"

#include <algorithm>
#include <utility>

#include "platform/failure.h"
#include "platform/row_failure.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Failure;
using platform::Recordset;
using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;
using platform::Value;

namespace {

/// The values of as many rows are read in less time than anybody notices.
constexpr std::size_t kReadAtOnce = 2'000;

}  // namespace

RowChanges::RowChanges(platform::ConnectionPtr cn, platform::ObjectFactoryPtr objects,
                       RowTable table, platform::Long lTimeout)
    : m_connection(std::move(cn)),
      m_objects(std::move(objects)),
      m_table(std::move(table)),
      m_lTimeout(std::max(lTimeout, 0)) {}

SentRow RowChanges::Send(const Recordset& rs, RowIndex row) const {
  if (rs.StateAt(row) == RowState::New) return {Insert(rs, row), std::nullopt};
  const auto columns = ChangedColumns(rs, row);
  if (columns.empty()) return {};
  const RowStatement statement = UpdateRow(m_table, rs, row, columns);
  std::vector<Value> key;
  for (const ColumnIndex column : m_table.key) key.push_back(rs.ValueAt(row, column));
  try {
    Run(statement, 1);
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kConflict) throw;
    auto conflict = ConflictOf(rs, row);
    if (!conflict) throw;
    return {{}, std::move(conflict)};
  }
  return {ReadStored(rs, row, key), std::nullopt};
}

std::optional<RowConflict> RowChanges::ConflictOf(const Recordset& rs, RowIndex row) const {
  std::vector<Value> original;
  for (const ColumnIndex column : m_table.key) original.push_back(rs.OriginalAt(row, column));
  RowConflict conflict = CompareRow(rs, row, Read(rs, row, original));
  const bool bTheirs = std::ranges::any_of(conflict.columns, &ColumnConflict::bTheirs);
  // As it was, but not the only one of its key, say.
  if (!bTheirs && !conflict.IsGone()) return std::nullopt;
  return conflict;
}

DeletedRows RowChanges::Delete(
    const Recordset& rs, std::span<const RowIndex> rows,
    const std::function<void(const std::function<void(std::stop_token)>& work)>& beside) const {
  // All of them before the first is sent: a statement that was cancelled may still ask for them
  // when others are edited.
  const auto values = std::make_shared<std::vector<std::vector<Value>>>();
  DeletedRows unnamed;
  const auto read = [&](const std::stop_token& stop) {
    for (const RowIndex row : rows) {
      if (stop.stop_requested()) {
        throw Failure(platform::failure::kCancelled, "Nothing was deleted: it was cancelled.");
      }
      try {
        values->push_back(ValuesOfDeleted(m_table, rs, row));
      } catch (const Failure& failed) {
        unnamed = {row, std::nullopt, failed.Description()};
        return;
      }
    }
  };
  if (beside && rows.size() > kReadAtOnce) {
    beside(read);
  } else {
    read({});
  }
  if (unnamed.refused) return unnamed;
  const platform::CommandPtr command = Command(DeleteEachRow(m_table, rs));
  command->RowsExpected(1);
  command->Batch([values, taken = std::size_t{0}](std::vector<Value>& next) mutable {
    if (taken == values->size()) return false;
    next = (*values)[taken++];
    return true;
  });
  try {
    command->Execute();
  } catch (const platform::RowFailure& failed) {
    const RowIndex row = rows[static_cast<std::size_t>(failed.Row() - 1)];
    if (failed.Number() == platform::failure::kConflict) {
      return {row, ConflictOf(rs, row), failed.Description()};
    }
    if (failed.Number() != platform::failure::kConstraint) throw;
    return {row, std::nullopt, failed.Description()};
  }
  return {};
}

std::vector<Value> RowChanges::Insert(const Recordset& rs, RowIndex row) const {
  const RecordsetPtr returned = Run(InsertRow(m_table, rs, row), 1);
  if (returned == nullptr || returned->RecordCount() != 1) return {};
  std::vector<Value> key;
  for (std::size_t i = 0; i < m_table.key.size(); ++i) {
    key.push_back(returned->ValueAt(0, static_cast<ColumnIndex>(i)));
  }
  return ReadStored(rs, row, key);
}

// The change was made, whatever becomes of the reading.
std::vector<Value> RowChanges::ReadStored(const Recordset& rs, RowIndex row,
                                          std::span<const Value> key) const {
  try {
    return Read(rs, row, key);
  } catch (const Failure&) {
    return {};
  }
}

std::vector<Value> RowChanges::Read(const Recordset& rs, RowIndex row,
                                    std::span<const Value> key) const {
  const RecordsetPtr read = Run(SelectRow(m_table, rs, key), std::nullopt);
  if (read == nullptr || read->RecordCount() == 0) return {};
  std::vector<Value> values;
  ColumnIndex columnRead = 0;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const bool bOfTable = !m_table.NameOf(rs, column).empty();
    values.push_back(bOfTable ? read->ValueAt(0, columnRead++) : rs.OriginalAt(row, column));
  }
  return values;
}

platform::CommandPtr RowChanges::Command(const platform::Text& sSql) const {
  platform::CommandPtr command = m_objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(sSql);
  command->CommandTimeout(m_lTimeout);
  return command;
}

RecordsetPtr RowChanges::Run(const RowStatement& statement,
                             std::optional<RowIndex> rowsExpected) const {
  const platform::CommandPtr command = Command(statement.sSql);
  command->ReadOnly(!rowsExpected);
  command->RowsExpected(rowsExpected);
  for (const TypedValue& value : statement.values) {
    command->Parameters().Append(command->CreateParameter(
        {}, value.type, platform::ParameterDirection::Input, 0, value.vtValue));
  }
  return command->Execute();
}

}  // namespace orvane::controls
