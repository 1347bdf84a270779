// A connection that tells the columns of its one table, for tests of what asks for them.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "ado/recordset_builder.h"
#include "tests/controls/fake_data.h"

namespace orvane::controls {

class SchemaConnection : public FakeConnection {
 public:
  using Columns = std::vector<std::pair<platform::Text, platform::DataType>>;

  explicit SchemaConnection(Columns columns)
      : FakeConnection(platform::Value("UTC")), m_columns(std::move(columns)) {}

  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> vtRestrictions) override {
    if (schema != platform::SchemaNumber::Columns) return nullptr;
    ++nAsked;
    asked.assign(vtRestrictions.begin(), vtRestrictions.end());
    if (whileAsked) whileAsked();
    ado::RecordsetBuilder builder(
        {{"COLUMN_NAME", platform::DataType::WChar}, {"DATA_TYPE", platform::DataType::Integer}});
    for (const auto& [sName, type] : m_columns) {
      builder.AppendRow({sName, static_cast<std::int32_t>(type)});
    }
    return builder.Finish();
  }

  int nAsked = 0;
  std::vector<platform::Value> asked;  ///< the restrictions of the last question
  std::function<void()> whileAsked;

 private:
  Columns m_columns;
};

/// The same of a table with a primary key of one column, whose rows can be edited.
class KeyedConnection : public SchemaConnection {
 public:
  KeyedConnection(Columns columns, platform::Text sKey)
      : SchemaConnection(columns), m_columns(std::move(columns)), m_sKey(std::move(sKey)) {}

  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> /*vtRestrictions*/) override {
    using platform::DataType;
    if (schema == platform::SchemaNumber::Tables) {
      ado::RecordsetBuilder tables({{"TABLE_TYPE", DataType::WChar}});
      tables.AppendRow({"TABLE"});
      return tables.Finish();
    }
    if (schema == platform::SchemaNumber::PrimaryKeys) {
      ado::RecordsetBuilder keys({{"COLUMN_NAME", DataType::WChar}});
      keys.AppendRow({m_sKey});
      return keys.Finish();
    }
    ado::RecordsetBuilder columns({{"COLUMN_NAME", DataType::WChar},
                                   {"DATA_TYPE", DataType::Integer},
                                   {"IS_NULLABLE", DataType::Boolean},
                                   {"COLUMN_HASDEFAULT", DataType::Boolean}});
    for (const auto& [sName, type] : m_columns) {
      columns.AppendRow({sName, static_cast<std::int32_t>(type), true, false});
    }
    return columns.Finish();
  }

 private:
  Columns m_columns;
  platform::Text m_sKey;
};

}  // namespace orvane::controls
