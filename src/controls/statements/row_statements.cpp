#include "controls/statements/row_statements.h"

#include <algorithm>
#include <bit>

#include "platform/failure.h"
#include "platform/quoting.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::DataType;
using platform::Failure;
using platform::Recordset;
using platform::RowIndex;
using platform::Text;
using platform::Value;
using platform::ValueKind;

namespace {

Text TableName(const RowTable& table) {
  return (table.sCatalog.empty() ? Text() : platform::QuotedName(table.sCatalog) + "..") +
         platform::QuotedName(table.sTable);
}

bool IsText(const Value& vtValue) {
  switch (vtValue.Kind()) {
    case ValueKind::Decimal:
    case ValueKind::Text:
    case ValueKind::Date:
    case ValueKind::TimeOfDay:
    case ValueKind::WallTime:
    case ValueKind::Guid:
      return true;
    case ValueKind::Null:
    case ValueKind::Boolean:
    case ValueKind::Long:
    case ValueKind::LongLong:
    case ValueKind::Double:
    case ValueKind::Timestamp:
    case ValueKind::Bytes:
    case ValueKind::Object:
      return false;
  }
  return false;
}

bool IsDayOrClock(const Value& vtValue) {
  return vtValue.Kind() == ValueKind::Date || vtValue.Kind() == ValueKind::TimeOfDay;
}

/// A column may keep fewer digits than are sent, and takes both zeros for equal.
bool IsDouble(const Value& vtValue) {
  return vtValue.Kind() == ValueKind::Double;
}

/// Puts a statement together, its values in the order of their places.
class Composer {
 public:
  Composer(const RowTable& table, const Recordset& rs) : m_table(table), m_rs(rs) {}

  Composer& Add(const Text& sSql) {
    m_statement.sSql += sSql;
    return *this;
  }
  Composer& AddName(ColumnIndex column) {
    return Add(platform::QuotedName(m_table.NameOf(m_rs, column)));
  }
  Composer& AddValue(ColumnIndex column, const Value& vtValue) {
    m_statement.values.push_back({m_rs.FieldAt(column).Type(), vtValue});
    return Add("?");
  }
  void AddSeparator(const Text& sSeparator) {
    if (m_bFirst) {
      m_bFirst = false;
    } else {
      Add(sSeparator);
    }
  }
  void Begin(const Text& sSql) {
    Add(sSql);
    m_bFirst = true;
  }
  /// That the column holds exactly this value. A column may compare its texts without regard to
  /// case, say; but what differs in that was changed.
  void AddSame(ColumnIndex column, const Value& vtValue, bool bKey) {
    BeginCondition();
    if (vtValue.IsNull()) {
      AddName(column).Add(" IS NULL");
      return;
    }
    // By its own rule first, for which a key has an index.
    const bool bText = IsText(vtValue) && ComparesTexts(column);
    const bool bByRule = bText && bKey && (!IsOfDays(column) || IsDayOrClock(vtValue));
    if (bByRule) AddName(column).Add(" = ").AddValue(column, vtValue).Add(" AND ");
    AddName(column).Add(" = ").AddValue(column, vtValue);
    if (bText || IsDouble(vtValue) || IsOfDays(column)) Add(" COLLATE BINARY");
  }
  /// That the column holds exactly a value that is not known yet, null included.
  void AddAny(ColumnIndex column, bool bKey) {
    BeginCondition();
    const bool bByRule = bKey && ComparesByRule(column);
    if (bByRule) AddName(column).Add(" = ?");
    const bool bExactly = ComparesTexts(column);
    if (bByRule && !bExactly) return;
    if (bByRule) Add(" AND ");
    AddName(column).Add(" IS ?");
    if (bExactly) Add(" COLLATE BINARY");
  }
  void AddKey(std::span<const Value> values) {
    for (std::size_t i = 0; i < m_table.key.size(); ++i) {
      RequireKey(m_table.key[i], values[i]);
      AddSame(m_table.key[i], values[i], true);
    }
  }
  bool IsKey(ColumnIndex column) const {
    return std::ranges::find(m_table.key, column) != m_table.key.end();
  }
  /// A column of times holds no text that is compared.
  bool ComparesTexts(ColumnIndex column) const {
    return m_rs.FieldAt(column).Type() != DataType::DBTimeStamp;
  }
  /// To the rule of such a column all that it meets is a date, or a time of day; what another
  /// program stored there may be neither.
  bool IsOfDays(ColumnIndex column) const {
    const DataType type = m_rs.FieldAt(column).Type();
    return type == DataType::DBDate || type == DataType::DBTime;
  }
  /// A number may be another one to a column of fewer digits.
  bool ComparesByRule(ColumnIndex column) const {
    return m_rs.FieldAt(column).Type() != DataType::Double;
  }
  void AddOriginal(RowIndex row, ColumnIndex column) {
    if (IsKey(column)) return;
    const Value vtOriginal = m_rs.OriginalAt(row, column);
    RequireFit(column, vtOriginal);
    AddSame(column, vtOriginal, false);
  }
  RowStatement Done() {
    m_statement.sSql += m_sEnd;
    return std::move(m_statement);
  }

  void RequireKey(ColumnIndex column, const Value& vtValue) const {
    if (vtValue.IsNull()) {
      throw Failure(platform::failure::kNotSupported,
                    "The row cannot be told from others, as its key \"" +
                        m_table.NameOf(m_rs, column) +
                        "\" is null: change it by a statement in the query editor.");
    }
    RequireFit(column, vtValue);
  }
  /// What another program stored in a column of times meets no time, unless the server takes it
  /// for one itself.
  void RequireFit(ColumnIndex column, const Value& vtValue) const {
    const platform::Field& field = m_rs.FieldAt(column);
    const bool bFits = field.Type() != DataType::DBTimeStamp || vtValue.IsNull() ||
                       vtValue.Kind() == ValueKind::Timestamp ||
                       field.TextOrder() == platform::TextOrder::BeyondValues;
    if (bFits) return;
    throw Failure(platform::failure::kNotSupported,
                  "The row cannot be told from others, as its \"" + m_table.NameOf(m_rs, column) +
                      "\" is no time: change it by a statement in the query editor.");
  }

 private:
  void BeginCondition() {
    // In brackets now and then: no engine takes a thousand conditions in one row.
    constexpr std::size_t kBetweenBrackets = 100;
    const bool bBracket = m_nConditions > 0 && m_nConditions % kBetweenBrackets == 0;
    AddSeparator(bBracket ? " AND (" : " AND ");
    if (bBracket) m_sEnd += ')';
    ++m_nConditions;
  }

  const RowTable& m_table;
  const Recordset& m_rs;
  RowStatement m_statement;
  bool m_bFirst = true;
  std::size_t m_nConditions = 0;
  Text m_sEnd;  ///< brackets that are still open
};

std::vector<Value> OriginalKey(const RowTable& table, const Recordset& rs, RowIndex row) {
  std::vector<Value> key;
  for (const ColumnIndex column : table.key) key.push_back(rs.OriginalAt(row, column));
  return key;
}

}  // namespace

Text RowTable::NameOf(const Recordset& rs, ColumnIndex column) const {
  return names.empty() ? rs.FieldAt(column).Name() : names[static_cast<std::size_t>(column)];
}

bool SameValue(const Value& vtOne, const Value& vtOther) {
  const auto* const dOne = vtOne.As<double>();
  const auto* const dOther = vtOther.As<double>();
  if (dOne == nullptr || dOther == nullptr) return vtOne == vtOther;
  return std::bit_cast<std::uint64_t>(*dOne) == std::bit_cast<std::uint64_t>(*dOther);
}

std::vector<ColumnIndex> ChangedColumns(const Recordset& rs, RowIndex row) {
  std::vector<ColumnIndex> columns;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const bool bChanged =
        rs.IsEdited(row, column) && !SameValue(rs.ValueAt(row, column), rs.OriginalAt(row, column));
    if (bChanged) columns.push_back(column);
  }
  return columns;
}

RowStatement UpdateRow(const RowTable& table, const Recordset& rs, RowIndex row,
                       std::span<const ColumnIndex> columns) {
  Composer composer(table, rs);
  composer.Begin("UPDATE " + TableName(table) + " SET ");
  for (const ColumnIndex column : columns) {
    composer.AddSeparator(", ");
    composer.AddName(column).Add(" = ").AddValue(column, rs.ValueAt(row, column));
  }
  composer.Begin(" WHERE ");
  composer.AddKey(OriginalKey(table, rs, row));
  for (const ColumnIndex column : columns) composer.AddOriginal(row, column);
  return composer.Done();
}

Text DeleteEachRow(const RowTable& table, const Recordset& rs) {
  Composer composer(table, rs);
  composer.Begin("DELETE FROM " + TableName(table) + " WHERE ");
  for (const ColumnIndex column : table.key) composer.AddAny(column, true);
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    const bool bOther = !table.NameOf(rs, column).empty() && !composer.IsKey(column);
    if (bOther) composer.AddAny(column, false);
  }
  return composer.Done().sSql;
}

std::vector<Value> ValuesOfDeleted(const RowTable& table, const Recordset& rs, RowIndex row) {
  const Composer composer(table, rs);
  std::vector<Value> values;
  for (const ColumnIndex column : table.key) {
    const Value vtKey = rs.OriginalAt(row, column);
    composer.RequireKey(column, vtKey);
    values.push_back(vtKey);
    if (composer.ComparesByRule(column) && composer.ComparesTexts(column)) values.push_back(vtKey);
  }
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (table.NameOf(rs, column).empty() || composer.IsKey(column)) continue;
    values.push_back(rs.OriginalAt(row, column));
    composer.RequireFit(column, values.back());
  }
  return values;
}

RowStatement InsertRow(const RowTable& table, const Recordset& rs, RowIndex row) {
  std::vector<ColumnIndex> given;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (rs.IsEdited(row, column)) given.push_back(column);
  }
  Composer composer(table, rs);
  composer.Add("INSERT INTO " + TableName(table));
  if (given.empty()) {
    composer.Add(" DEFAULT VALUES");
  } else {
    composer.Begin(" (");
    for (const ColumnIndex column : given) {
      composer.AddSeparator(", ");
      composer.AddName(column);
    }
    composer.Begin(") VALUES (");
    for (const ColumnIndex column : given) {
      composer.AddSeparator(", ");
      composer.AddValue(column, rs.ValueAt(row, column));
    }
    composer.Add(")");
  }
  composer.Begin(" RETURNING ");
  for (const ColumnIndex column : table.key) {
    composer.AddSeparator(", ");
    composer.AddName(column);
  }
  return composer.Done();
}

RowStatement SelectRow(const RowTable& table, const Recordset& rs, std::span<const Value> key) {
  Composer composer(table, rs);
  composer.Begin("SELECT ");
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (table.NameOf(rs, column).empty()) continue;
    composer.AddSeparator(", ");
    composer.AddName(column);
  }
  composer.Begin(" FROM " + TableName(table) + " WHERE ");
  composer.AddKey(key);
  return composer.Done();
}

}  // namespace orvane::controls
