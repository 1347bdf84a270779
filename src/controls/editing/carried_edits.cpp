#include "controls/editing/carried_edits.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "platform/conversions.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;

namespace {

/// For each column of one recordset the same column of the other.
using ColumnMap = std::vector<std::optional<ColumnIndex>>;

ColumnMap MapColumns(const Recordset& from, const RowTable& fromTable, const Recordset& to,
                     const RowTable& toTable) {
  ColumnMap map(static_cast<std::size_t>(from.FieldCount()));
  if (!fromTable.names.empty() && fromTable.names == toTable.names) {
    // The same statement: what it works out is found again too.
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      map[static_cast<std::size_t>(column)] = column;
    }
    return map;
  }
  for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
    const Text sName = fromTable.NameOf(from, column);
    for (ColumnIndex other = 0; other < to.FieldCount() && !sName.empty(); ++other) {
      if (toTable.NameOf(to, other) == sName) map[static_cast<std::size_t>(column)] = other;
    }
  }
  return map;
}

void AppendPart(Text& sKey, const Value& vtValue) {
  const Text sPart = platform::ToText(vtValue);
  // With its kind and length, so that no two keys are written alike.
  sKey += std::to_string(static_cast<int>(vtValue.Kind())) + ":" + std::to_string(sPart.size()) +
          ":" + sPart;
}

struct Carrying {
  const Recordset& from;
  const ColumnMap& map;
  Recordset& to;

  ColumnIndex Mapped(ColumnIndex column) const { return *map[static_cast<std::size_t>(column)]; }

  void LayEdits(RowIndex row, RowIndex rowTo) const {
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (!from.IsEdited(row, column)) continue;
      to.ValueAt(rowTo, Mapped(column), from.ValueAt(row, column));
    }
    if (from.StateAt(row) == RowState::Deleted) to.Delete(rowTo);
  }

  /// What the row is found by stays what I saw: everything of a row to be deleted, otherwise the
  /// values that I changed.
  void KeepOriginals(RowIndex row, RowIndex rowTo) const {
    const bool bDeleted = from.StateAt(row) == RowState::Deleted;
    std::vector<Value> values;
    bool bOthers = false;
    for (ColumnIndex column = 0; column < to.FieldCount(); ++column) {
      values.push_back(to.OriginalAt(rowTo, column));
    }
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (!map[static_cast<std::size_t>(column)]) continue;
      if (!bDeleted && !from.IsEdited(row, column)) continue;
      Value& vtValue = values[static_cast<std::size_t>(Mapped(column))];
      const Value vtSeen = from.OriginalAt(row, column);
      if (SameValue(vtValue, vtSeen)) continue;
      vtValue = vtSeen;
      bOthers = true;
    }
    if (bOthers) to.Accept(rowTo, values);
  }

  /// The row as it was fetched before, behind the others.
  RowIndex AddAsItWas(RowIndex row) const {
    const RowIndex rowTo = to.AddNew();
    std::vector<Value> values(static_cast<std::size_t>(to.FieldCount()));
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (!map[static_cast<std::size_t>(column)]) continue;
      values[static_cast<std::size_t>(Mapped(column))] = from.OriginalAt(row, column);
    }
    to.Accept(rowTo, values);
    return rowTo;
  }
};

/// Where the rows of these keys stand.
std::unordered_map<Text, RowIndex> FindKeys(const std::unordered_map<Text, RowIndex>& wanted,
                                            const Recordset& to, const RowTable& table) {
  std::unordered_map<Text, RowIndex> found;
  const RowIndex rows = to.FetchedCount();
  for (RowIndex row = 0; row < rows && found.size() < wanted.size(); ++row) {
    Text sKey;
    for (const ColumnIndex column : table.key) AppendPart(sKey, to.OriginalAt(row, column));
    if (wanted.contains(sKey)) found.emplace(std::move(sKey), row);
  }
  return found;
}

}  // namespace

bool CanCarryEdits(const Recordset& from, const RowTable& fromTable, const Recordset& to,
                   const RowTable& toTable) {
  const auto pending = from.PendingRows();
  if (pending.empty()) return true;
  const bool bSameTable =
      fromTable.sCatalog == toTable.sCatalog && fromTable.sTable == toTable.sTable;
  if (!bSameTable || fromTable.key.size() != toTable.key.size() || toTable.key.empty())
    return false;
  const ColumnMap map = MapColumns(from, fromTable, to, toTable);
  for (std::size_t n = 0; n < toTable.key.size(); ++n) {
    if (map[static_cast<std::size_t>(fromTable.key[n])] != toTable.key[n]) return false;
  }
  return std::ranges::all_of(pending, [&](RowIndex row) {
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (from.IsEdited(row, column) && !map[static_cast<std::size_t>(column)]) return false;
    }
    return true;
  });
}

std::shared_ptr<EditNotes> CarryEdits(const Recordset& from, const RowTable& fromTable,
                                      const EditNotes& notes, Recordset& to,
                                      const RowTable& toTable) {
  auto carried = std::make_shared<EditNotes>();
  const ColumnMap map = MapColumns(from, fromTable, to, toTable);
  const Carrying carrying{from, map, to};
  std::unordered_map<Text, RowIndex> wanted;
  for (const RowIndex row : from.PendingRows()) {
    Text sKey;
    for (const ColumnIndex column : fromTable.key) AppendPart(sKey, from.OriginalAt(row, column));
    if (from.StateAt(row) != RowState::New) wanted.emplace(std::move(sKey), row);
  }
  std::unordered_map<RowIndex, RowIndex> places;
  for (const auto& [sKey, row] : FindKeys(wanted, to, toTable)) places[wanted.at(sKey)] = row;

  for (const RowIndex row : from.PendingRows()) {
    const auto known = notes.remarks.find(row);
    QString sRemark = known == notes.remarks.end() ? QString() : known->second;
    RowIndex rowTo = 0;
    if (from.StateAt(row) == RowState::New) {
      rowTo = to.AddNew();
    } else if (const auto place = places.find(row); place != places.end()) {
      rowTo = place->second;
      carrying.KeepOriginals(row, rowTo);
    } else {
      rowTo = carrying.AddAsItWas(row);
      sRemark =
          "This row was not fetched again: it was deleted meanwhile, or the filter or the row "
          "limit "
          "leaves it out. It is kept here until it is stored or discarded.";
    }
    carrying.LayEdits(row, rowTo);
    if (!sRemark.isEmpty()) carried->remarks[rowTo] = sRemark;
  }
  return carried;
}

}  // namespace orvane::controls
