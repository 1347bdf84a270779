#include "provider/schema_rowsets.h"

#include <algorithm>
#include <charconv>

#include "platform/ado/column_flags.h"
#include "platform/conversions.h"
#include "provider/dialect/lexer.h"

namespace orvane::provider {
namespace {

using platform::DataType;
using platform::Null;
using platform::Text;
using platform::Value;

platform::Long Number(DataType type) {
  return static_cast<platform::Long>(type);
}

bool IsText(DataType type) {
  return type == DataType::WChar || type == DataType::Empty;
}

// The length in "VARCHAR(20)".
Value DeclaredLength(const engines::ColumnSchema& column) {
  const Text& sType = column.sDeclaredType;
  const auto open = sType.find('(');
  if (open == Text::npos) return Null();
  platform::Long lLength = 0;
  const char* const begin = sType.data() + open + 1;
  const auto read = std::from_chars(begin, sType.data() + sType.size(), lLength);
  return read.ec == std::errc() ? Value(lLength) : Value();
}

Value NumericPrecision(const engines::ColumnSchema& column, DataType type) {
  switch (type) {
    case DataType::Integer:
      return 10;
    case DataType::BigInt:
      return 19;
    case DataType::Double:
      return 15;
    case DataType::Numeric:
      return column.bRounds ? 15 : 38;
    case DataType::Empty:
    case DataType::Boolean:
    case DataType::Guid:
    case DataType::Binary:
    case DataType::WChar:
    case DataType::DBDate:
    case DataType::DBTime:
    case DataType::DBTimeStamp:
    case DataType::WallTime:
      break;
  }
  return Null();
}

}  // namespace

platform::RecordsetPtr CatalogsRowset(std::span<const ShownCatalog> catalogs) {
  ado::RecordsetBuilder builder(
      {{"CATALOG_NAME", DataType::WChar, false}, {"DESCRIPTION", DataType::WChar, true}});
  for (const auto& catalog : catalogs) {
    builder.AppendRow(
        {catalog.sName, catalog.sDescription.empty() ? Value() : Value(catalog.sDescription)});
  }
  return builder.Finish();
}

TablesRowset::TablesRowset()
    : m_builder({{"TABLE_CATALOG", DataType::WChar, false},
                 {"TABLE_SCHEMA", DataType::WChar, true},
                 {"TABLE_NAME", DataType::WChar, false},
                 {"TABLE_TYPE", DataType::WChar, false},
                 {"TABLE_GUID", DataType::Guid, true},
                 {"DESCRIPTION", DataType::WChar, true},
                 {"TABLE_PROPID", DataType::Integer, true},
                 {"DATE_CREATED", DataType::DBTimeStamp, true},
                 {"DATE_MODIFIED", DataType::DBTimeStamp, true}}) {}

Text TablesRowset::TypeOf(const ShownCatalog& catalog, const engines::TableSchema& table) {
  if (catalog.bSystem) return "SYSTEM TABLE";
  return table.bView ? "VIEW" : "TABLE";
}

void TablesRowset::Append(const ShownCatalog& catalog, const Text& sShownTable,
                          const engines::TableSchema& table) {
  m_builder.AppendRow({catalog.sName, Null(), sShownTable, TypeOf(catalog, table), Null(), Null(),
                       Null(), Null(), Null()});
}

ColumnsRowset::ColumnsRowset(platform::Boolean bTimeAsDouble)
    : m_bTimeAsDouble(bTimeAsDouble),
      m_builder({{"TABLE_CATALOG", DataType::WChar, false},
                 {"TABLE_SCHEMA", DataType::WChar, true},
                 {"TABLE_NAME", DataType::WChar, false},
                 {"COLUMN_NAME", DataType::WChar, false},
                 {"COLUMN_GUID", DataType::Guid, true},
                 {"COLUMN_PROPID", DataType::Integer, true},
                 {"ORDINAL_POSITION", DataType::Integer, false},
                 {"COLUMN_HASDEFAULT", DataType::Boolean, false},
                 {"COLUMN_DEFAULT", DataType::WChar, true},
                 {"COLUMN_FLAGS", DataType::Integer, true},
                 {"IS_NULLABLE", DataType::Boolean, false},
                 {"DATA_TYPE", DataType::Integer, false},
                 {"TYPE_GUID", DataType::Guid, true},
                 {"CHARACTER_MAXIMUM_LENGTH", DataType::Integer, true},
                 {"CHARACTER_OCTET_LENGTH", DataType::Integer, true},
                 {"NUMERIC_PRECISION", DataType::Integer, true},
                 {"NUMERIC_SCALE", DataType::Integer, true},
                 {"DATETIME_PRECISION", DataType::Integer, true},
                 {"DESCRIPTION", DataType::WChar, true}}) {}

namespace {

// As data access publishes them.
platform::Long FlagsOf(const engines::TableSchema& table, const engines::ColumnSchema& column) {
  constexpr platform::Long kTakesNull = 0x20;
  constexpr platform::Long kMayBeNull = 0x40;
  const bool bWrite = !table.bView && !column.bGenerated;
  namespace flags = platform::column_flags;
  return (bWrite ? flags::kTakesValues : 0) | (column.bNullable ? kTakesNull | kMayBeNull : 0) |
         (column.bBeyond ? flags::kTakesBeyond : 0) | (column.bNullIsLast ? flags::kNullIsLast : 0);
}

}  // namespace

void ColumnsRowset::Append(const ShownCatalog& catalog, const Text& sShownTable,
                           const engines::TableSchema& table, const Text* sColumn) {
  platform::Long lOrdinal = 0;
  for (const auto& column : table.columns) {
    ++lOrdinal;
    if (sColumn != nullptr && !dialect::SameName(*sColumn, column.sName)) continue;
    const bool bTime = column.type == DataType::DBTimeStamp;
    const DataType type = bTime && m_bTimeAsDouble ? DataType::Double : column.type;
    const bool bSized = IsText(type) || type == DataType::Binary;
    const Value vtLength = bSized ? DeclaredLength(column) : Value();
    m_builder.AppendRow(
        {catalog.sName, Null(), sShownTable, column.sName, Null(), Null(), lOrdinal,
         column.sDefault.has_value(), column.sDefault ? Value(*column.sDefault) : Value(),
         FlagsOf(table, column), column.bNullable, Number(type), Null(), vtLength,
         type == DataType::Binary ? vtLength : Value(), NumericPrecision(column, type), Null(),
         type == DataType::DBTimeStamp || type == DataType::WallTime ? Value(6) : Value(), Null()});
  }
}

PrimaryKeysRowset::PrimaryKeysRowset()
    : m_builder({{"TABLE_CATALOG", DataType::WChar, false},
                 {"TABLE_SCHEMA", DataType::WChar, true},
                 {"TABLE_NAME", DataType::WChar, false},
                 {"COLUMN_NAME", DataType::WChar, false},
                 {"COLUMN_GUID", DataType::Guid, true},
                 {"COLUMN_PROPID", DataType::Integer, true},
                 {"ORDINAL", DataType::Integer, false},
                 {"PK_NAME", DataType::WChar, false}}) {}

void PrimaryKeysRowset::Append(const ShownCatalog& catalog, const Text& sShownTable,
                               const engines::TableSchema& table) {
  std::vector<const engines::ColumnSchema*> key;
  for (const auto& column : table.columns) {
    if (column.lKeyOrdinal > 0) key.push_back(&column);
  }
  std::sort(key.begin(), key.end(), [](const auto* left, const auto* right) {
    return left->lKeyOrdinal < right->lKeyOrdinal;
  });
  for (const auto* const column : key) {
    m_builder.AppendRow({catalog.sName, Null(), sShownTable, column->sName, Null(), Null(),
                         column->lKeyOrdinal, "PK_" + table.sName});
  }
}

IndexesRowset::IndexesRowset()
    : m_builder({{"TABLE_CATALOG", DataType::WChar, false},
                 {"TABLE_SCHEMA", DataType::WChar, true},
                 {"TABLE_NAME", DataType::WChar, false},
                 {"INDEX_CATALOG", DataType::WChar, false},
                 {"INDEX_SCHEMA", DataType::WChar, true},
                 {"INDEX_NAME", DataType::WChar, false},
                 {"PRIMARY_KEY", DataType::Boolean, false},
                 {"UNIQUE", DataType::Boolean, false},
                 {"CLUSTERED", DataType::Boolean, false},
                 {"TYPE", DataType::Integer, false},
                 {"FILL_FACTOR", DataType::Integer, true},
                 {"INITIAL_SIZE", DataType::Integer, true},
                 {"NULLS", DataType::Integer, true},
                 {"SORT_BOOKMARKS", DataType::Boolean, false},
                 {"AUTO_UPDATE", DataType::Boolean, false},
                 {"NULL_COLLATION", DataType::Integer, false},
                 {"ORDINAL_POSITION", DataType::Integer, false},
                 {"COLUMN_NAME", DataType::WChar, true},
                 {"COLUMN_GUID", DataType::Guid, true},
                 {"COLUMN_PROPID", DataType::Integer, true},
                 {"COLLATION", DataType::Integer, false},
                 {"CARDINALITY", DataType::BigInt, true},
                 {"PAGES", DataType::Integer, true},
                 {"FILTER_CONDITION", DataType::WChar, true},
                 {"INTEGRATED", DataType::Boolean, false}}) {}

void IndexesRowset::Append(const ShownCatalog& catalog, const Text& sShownTable,
                           const engines::IndexSchema& index) {
  constexpr platform::Long kNullsFirst = 4;
  constexpr platform::Long kAscending = 1;
  constexpr platform::Long kDescending = 2;
  platform::Long lOrdinal = 0;
  for (const auto& part : index.parts) {
    m_builder.AppendRow({catalog.sName,
                         Null(),
                         sShownTable,
                         catalog.sName,
                         Null(),
                         index.sName,
                         index.bPrimaryKey,
                         index.bUnique,
                         false,
                         kBalancedTree,
                         Null(),
                         Null(),
                         Null(),
                         false,
                         true,
                         kNullsFirst,
                         ++lOrdinal,
                         part.sColumn ? Value(*part.sColumn) : Value(),
                         Null(),
                         Null(),
                         part.bDescending ? kDescending : kAscending,
                         Null(),
                         Null(),
                         index.sFilter ? Value(*index.sFilter) : Value(),
                         false});
  }
}

platform::RecordsetPtr ProviderTypesRowset(std::span<const engines::TypeSchema> types,
                                           const Value& vtType, const Value& vtBestMatch) {
  ado::RecordsetBuilder builder({{"TYPE_NAME", DataType::WChar, false},
                                 {"DATA_TYPE", DataType::Integer, false},
                                 {"COLUMN_SIZE", DataType::Integer, true},
                                 {"LITERAL_PREFIX", DataType::WChar, true},
                                 {"LITERAL_SUFFIX", DataType::WChar, true},
                                 {"CREATE_PARAMS", DataType::WChar, true},
                                 {"IS_NULLABLE", DataType::Boolean, false},
                                 {"CASE_SENSITIVE", DataType::Boolean, false},
                                 {"SEARCHABLE", DataType::Integer, false},
                                 {"UNSIGNED_ATTRIBUTE", DataType::Boolean, true},
                                 {"FIXED_PREC_SCALE", DataType::Boolean, false},
                                 {"AUTO_UNIQUE_VALUE", DataType::Boolean, false},
                                 {"LOCAL_TYPE_NAME", DataType::WChar, true},
                                 {"MINIMUM_SCALE", DataType::Integer, true},
                                 {"MAXIMUM_SCALE", DataType::Integer, true},
                                 {"GUID", DataType::Guid, true},
                                 {"TYPELIB", DataType::WChar, true},
                                 {"VERSION", DataType::WChar, true},
                                 {"IS_LONG", DataType::Boolean, false},
                                 {"BEST_MATCH", DataType::Boolean, false},
                                 {"IS_FIXEDLENGTH", DataType::Boolean, false}});
  const auto text = [](const char* sText) { return sText != nullptr ? Value(sText) : Value(); };
  // Searchable in every comparison.
  constexpr platform::Long kSearchable = 4;
  for (const auto& type : types) {
    if (!vtType.IsNull() && platform::ToLong(vtType) != Number(type.type)) continue;
    if (!vtBestMatch.IsNull() && platform::ToBoolean(vtBestMatch) != type.bBestMatch) continue;
    const bool bNumber = type.type == DataType::Integer || type.type == DataType::BigInt ||
                         type.type == DataType::Double || type.type == DataType::Numeric;
    const bool bLong = type.lSize == 1'000'000'000;
    builder.AppendRow({type.sName,
                       Number(type.type),
                       type.lSize,
                       text(type.sPrefix),
                       text(type.sSuffix),
                       text(type.sParameters),
                       true,
                       IsText(type.type),
                       kSearchable,
                       bNumber ? Value(false) : Value(),
                       false,
                       false,
                       type.sName,
                       Null(),
                       Null(),
                       Null(),
                       Null(),
                       Null(),
                       bLong,
                       type.bBestMatch,
                       !bLong});
  }
  return builder.Finish();
}

}  // namespace orvane::provider
