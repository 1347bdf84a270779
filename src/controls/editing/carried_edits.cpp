#include "controls/editing/carried_edits.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <unordered_map>

#include "platform/conversions.h"
#include "platform/failure.h"

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

/// Why a row stands behind the others.
QString NotFetchedAgain() {
  return QStringLiteral(
      "This row was not fetched again: it was deleted meanwhile, or the filter or the row limit "
      "leaves it out. It is kept here until it is stored or discarded.");
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

  std::vector<Value> Fetched(RowIndex rowTo) const {
    std::vector<Value> values;
    for (ColumnIndex column = 0; column < to.FieldCount(); ++column) {
      values.push_back(to.OriginalAt(rowTo, column));
    }
    return values;
  }

  /// What the row is found by stays what I saw: everything of a row to be deleted, otherwise the
  /// values that I changed.
  void KeepOriginals(RowIndex row, RowIndex rowTo) const {
    const bool bDeleted = from.StateAt(row) == RowState::Deleted;
    std::vector<Value> values = Fetched(rowTo);
    bool bOthers = false;
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

  /// The values of a row, by the columns of the other recordset.
  std::vector<Value> MappedValues(const std::function<Value(ColumnIndex)>& valueAt) const {
    std::vector<Value> values(static_cast<std::size_t>(to.FieldCount()));
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (!map[static_cast<std::size_t>(column)]) continue;
      values[static_cast<std::size_t>(Mapped(column))] = valueAt(column);
    }
    return values;
  }

  /// The row as it was fetched before, behind the others.
  RowIndex AddAsItWas(RowIndex row) const {
    const RowIndex rowTo = to.AddNew();
    to.Accept(rowTo,
              MappedValues([&](ColumnIndex column) { return from.OriginalAt(row, column); }));
    return rowTo;
  }
};

/// What is carried of one row, and where it came to stand.
struct CarriedRow {
  RowIndex row = 0;
  RowIndex rowTo = 0;
  bool bFound = false;         ///< it was fetched again
  std::vector<Value> fetched;  ///< as it was then
};

/// What is known of one row that is not stored.
void CarryNotes(const Carrying& carrying, const CarriedRow& at, const EditNotes& notes,
                EditNotes& carried) {
  const auto known = notes.remarks.find(at.row);
  QString sRemark = known == notes.remarks.end() ? QString() : known->second;
  if (const auto found = notes.conflicts.find(at.row); found != notes.conflicts.end()) {
    const RowConflict& before = found->second;
    std::vector<Value> theirs = at.fetched;
    if (!at.bFound && !before.IsGone()) {
      theirs = carrying.MappedValues(
          [&](ColumnIndex column) { return before.theirs[static_cast<std::size_t>(column)]; });
    }
    RowConflict conflict = CompareRow(carrying.to, at.rowTo, std::move(theirs));
    const bool bTheirs = std::ranges::any_of(conflict.columns, &ColumnConflict::bTheirs);
    if (bTheirs || conflict.IsGone()) {
      sRemark = QString::fromStdString(conflict.sSentence);
      carried.conflicts.emplace(at.rowTo, std::move(conflict));
    } else {
      sRemark.clear();  // it is as it was again
    }
  }
  if (!sRemark.isEmpty()) carried.remarks[at.rowTo] = sRemark;
}

/// Tells of a row that stands behind the others why it does, and of no other.
void TellWhetherFetched(const CarriedRow& at, EditNotes& carried) {
  QString& sRemark = carried.remarks[at.rowTo];
  sRemark = sRemark.remove(NotFetchedAgain()).trimmed();
  if (!at.bFound) sRemark = (sRemark + u' ' + NotFetchedAgain()).trimmed();
  if (sRemark.isEmpty()) carried.remarks.erase(at.rowTo);
}

using RowsOfKeys = std::unordered_map<Text, RowIndex>;

[[noreturn]] void FailCancelled() {
  throw platform::Failure(
      platform::failure::kCancelled,
      "The search for the rows that are not stored was cancelled; what was typed into them is "
      "kept. Refresh to search again.");
}

/// Where the rows of these keys stand. On any thread.
RowsOfKeys LookForKeys(const RowsOfKeys& wanted, const Recordset& to, const RowTable& table,
                       const std::stop_token& stop) {
  RowsOfKeys found;
  const RowIndex rows = to.FetchedCount();
  for (RowIndex row = 0; row < rows && found.size() < wanted.size(); ++row) {
    if (stop.stop_requested()) FailCancelled();
    Text sKey;
    for (const ColumnIndex column : table.key) AppendPart(sKey, to.OriginalAt(row, column));
    if (wanted.contains(sKey)) found.emplace(std::move(sKey), row);
  }
  return found;
}

/// True when a row of one is found among those of the other.
bool AreKeyedAlike(const RowTable& fromTable, const RowTable& toTable, const ColumnMap& map) {
  const bool bSameTable =
      fromTable.sCatalog == toTable.sCatalog && fromTable.sTable == toTable.sTable;
  if (!bSameTable || fromTable.key.size() != toTable.key.size() || toTable.key.empty())
    return false;
  for (std::size_t n = 0; n < toTable.key.size(); ++n) {
    if (map[static_cast<std::size_t>(fromTable.key[n])] != toTable.key[n]) return false;
  }
  return true;
}

}  // namespace

bool CanCarryEdits(const Recordset& from, const RowTable& fromTable, const Recordset& to,
                   const RowTable& toTable) {
  const auto pending = from.PendingRows();
  if (pending.empty()) return true;
  const ColumnMap map = MapColumns(from, fromTable, to, toTable);
  if (!AreKeyedAlike(fromTable, toTable, map)) return false;
  return std::ranges::all_of(pending, [&](RowIndex row) {
    for (ColumnIndex column = 0; column < from.FieldCount(); ++column) {
      if (from.IsEdited(row, column) && !map[static_cast<std::size_t>(column)]) return false;
    }
    return true;
  });
}

namespace {

/// As many are looked at in less time than anybody notices.
constexpr RowIndex kLookedAtAtOnce = 10'000;

/// The rows of which something is known, and where they come to stand.
class CarriedRows {
 public:
  CarriedRows(const Carrying& carrying, const EditNotes& notes)
      : m_carrying(carrying), m_notes(notes), m_pending(carrying.from.PendingRows()) {}

  bool IsPending(RowIndex row) const { return std::ranges::binary_search(m_pending, row); }
  bool IsNew(RowIndex row) const {
    return m_carrying.from.StateAt(row) == RowState::New || m_notes.gone.contains(row);
  }
  const std::vector<RowIndex>& Rows() const { return m_rows; }
  /// Of a row that was fetched again its number; none of others.
  std::optional<RowIndex> PlaceOf(RowIndex row) const {
    const auto found = m_places.find(row);
    return found == m_places.end() ? std::nullopt : std::optional(found->second);
  }

  /// On any thread.
  void Find(const RowTable& fromTable, const RowTable& toTable, const std::stop_token& stop) {
    // A row over which nothing lies any more can be changed by undoing all the same.
    std::set<RowIndex> rows = m_notes.steps.Rows();
    std::erase_if(rows, [&](RowIndex row) { return row >= m_carrying.from.RecordCount(); });
    rows.insert(m_pending.begin(), m_pending.end());
    m_rows.assign(rows.begin(), rows.end());
    RowsOfKeys wanted;
    for (const RowIndex row : m_rows) {
      if (IsNew(row)) continue;
      Text sKey;
      for (const ColumnIndex column : fromTable.key) {
        AppendPart(sKey, m_carrying.from.OriginalAt(row, column));
      }
      wanted.emplace(std::move(sKey), row);
    }
    if (wanted.empty()) return;
    for (const auto& [sKey, row] : LookForKeys(wanted, m_carrying.to, toTable, stop)) {
      m_places[wanted.at(sKey)] = row;
    }
  }

 private:
  const Carrying& m_carrying;
  const EditNotes& m_notes;
  const std::vector<RowIndex> m_pending;
  std::vector<RowIndex> m_rows;
  std::unordered_map<RowIndex, RowIndex> m_places;
};

/// Takes one row over; gives the number that it has now, where it has one.
std::optional<RowIndex> CarryRow(const Carrying& carrying, const CarriedRows& rows, RowIndex row,
                                 const EditNotes& notes, bool bKeep, EditNotes& carried) {
  Recordset& to = carrying.to;
  const bool bPending = rows.IsPending(row);
  CarriedRow at{row, 0, true, {}};
  if (rows.IsNew(row)) {
    at.rowTo = to.AddNew();
    if (!bPending) {
      to.CancelUpdate(at.rowTo);
      carried.gone.insert(at.rowTo);
    }
  } else if (const auto place = rows.PlaceOf(row)) {
    at.rowTo = *place;
    if (bPending) {
      at.fetched = carrying.Fetched(at.rowTo);
      carrying.KeepOriginals(row, at.rowTo);
    }
  } else if (bPending || bKeep) {
    at.rowTo = carrying.AddAsItWas(row);
    at.bFound = false;
  } else {
    return std::nullopt;
  }
  if (!bPending) return at.rowTo;
  carrying.LayEdits(row, at.rowTo);
  CarryNotes(carrying, at, notes, carried);
  if (!bKeep) TellWhetherFetched(at, carried);
  return at.rowTo;
}

std::shared_ptr<EditNotes> Carry(const Carrying& carrying, const RowTable& fromTable,
                                 const EditNotes& notes, const RowTable& toTable, bool bKeep,
                                 const Waits& waits) {
  auto carried = std::make_shared<EditNotes>();
  if (!AreKeyedAlike(fromTable, toTable, carrying.map)) return carried;
  const bool bNothing =
      carrying.from.PendingCount() == 0 && !notes.steps.CanUndo() && !notes.steps.CanRedo();
  if (bNothing) return carried;
  CarriedRows rows(carrying, notes);
  const auto beside = [&](RowIndex nLooked, const std::function<void(std::stop_token)>& work) {
    if (waits.beside && nLooked > kLookedAtAtOnce) return waits.beside(work);
    work({});
  };
  beside(carrying.to.FetchedCount() + carrying.from.PendingCount(),
         [&](const std::stop_token& stop) { rows.Find(fromTable, toTable, stop); });
  std::unordered_map<RowIndex, RowIndex> moves;
  std::size_t nNext = 0;
  const auto slice = [&] {
    const std::size_t nEnd = std::min(rows.Rows().size(), nNext + kInSlice);
    for (; nNext < nEnd; ++nNext) {
      const RowIndex row = rows.Rows()[nNext];
      const auto rowTo = CarryRow(carrying, rows, row, notes, bKeep, *carried);
      if (rowTo) moves.emplace(row, *rowTo);
    }
    return nNext == rows.Rows().size();
  };
  if (waits.slices && rows.Rows().size() > kInSlice) {
    if (!waits.slices("Laying what is not stored over the rows", slice)) FailCancelled();
  } else {
    while (!slice()) {
    }
  }
  beside(static_cast<RowIndex>(rows.Rows().size()),
         [&](const std::stop_token&) { carried->steps = notes.steps.Moved(moves, carrying.map); });
  return carried;
}

}  // namespace

std::shared_ptr<EditNotes> CarryEdits(const Recordset& from, const RowTable& fromTable,
                                      const EditNotes& notes, Recordset& to,
                                      const RowTable& toTable, const Waits& waits) {
  const ColumnMap map = MapColumns(from, fromTable, to, toTable);
  return Carry({from, map, to}, fromTable, notes, toTable, false, waits);
}

std::shared_ptr<EditNotes> KeepEdits(const Recordset& from, const RowTable& table,
                                     const EditNotes& notes, Recordset& to) {
  ColumnMap map;
  for (ColumnIndex column = 0; column < from.FieldCount(); ++column) map.emplace_back(column);
  return Carry({from, map, to}, table, notes, table, true, {});
}

}  // namespace orvane::controls
