#include "controls/statements/updatability.h"

#include <optional>
#include <utility>

#include "controls/statements/row_key.h"
#include "controls/statements/time_column.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Connection;
using platform::Recordset;
using platform::Text;

namespace {

std::optional<ColumnIndex> ColumnOf(const Recordset& rs, const RowTable& table, const Text& sName) {
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (table.NameOf(rs, column) == sName) return column;
  }
  return std::nullopt;
}

/// Finds the key among the columns; gives the reason why that cannot be, or nothing.
Text FindKey(Connection& cn, const Recordset& rs, Updatability& updatability) {
  RowTable& table = updatability.table;
  const RowKey key = RowKeyOf(cn, table.sCatalog, table.sTable);
  updatability.bNoTable = key.bNoTable;
  if (GivesTimesAsNumbers(cn)) {
    return "These rows can only be looked at: times are shown as numbers, which are not exact; "
           "switch off \"Time as Double\" in the server's extended options.";
  }
  if (key.columns.empty()) return key.sWhyNot;
  for (const Text& sName : key.columns) {
    const auto column = ColumnOf(rs, table, sName);
    if (!column) {
      return "These rows can only be looked at: the column \"" + sName +
             "\", which tells them apart, is not shown; choose it in the query.";
    }
    table.key.push_back(*column);
  }
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (key.computed.contains(table.NameOf(rs, column))) updatability.computed.insert(column);
  }
  return {};
}

/// What a new row cannot do without and these columns do not have; nothing where they have all.
Text FindMissing(Connection& cn, const Recordset& rs, const RowTable& table) {
  for (const Text& sName : NeededColumns(cn, table.sCatalog, table.sTable)) {
    if (!ColumnOf(rs, table, sName)) {
      return "No row can be added here: the column \"" + sName +
             "\", which is never empty, is not shown; choose it in the query.";
    }
  }
  return {};
}

}  // namespace

Updatability UpdatabilityOf(Connection& cn, RowTable table, const Recordset& rs) {
  Updatability updatability;
  updatability.table = std::move(table);
  Text sWhyNot;
  try {
    sWhyNot = FindKey(cn, rs, updatability);
    updatability.bUpdate = updatability.bDelete = sWhyNot.empty();
    if (sWhyNot.empty()) {
      sWhyNot = FindMissing(cn, rs, updatability.table);
      updatability.bInsert = sWhyNot.empty();
    }
  } catch (const platform::Failure& failure) {
    sWhyNot = "These rows can only be looked at: what tells them apart could not be read. " +
              failure.Description();
    updatability.bUpdate = updatability.bDelete = false;
  }
  updatability.sWhyNot = QString::fromStdString(sWhyNot);
  return updatability;
}

}  // namespace orvane::controls
