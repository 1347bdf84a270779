#include "provider/engines/sqlite/sqlite_types.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/conversions.h"

namespace orvane::provider::engines {
namespace {

using platform::DataType;
using platform::Value;

TEST(SqliteTypes, declared_types_have_their_column_types) {
  const std::vector<std::pair<std::string, DataType>> cases = {
      {"INTEGER", DataType::BigInt},
      {"BIGINT", DataType::BigInt},
      {"INT8", DataType::BigInt},
      {"UNSIGNED BIG INT", DataType::BigInt},
      {"INT", DataType::Integer},
      {"INT2", DataType::Integer},
      {"INT4", DataType::Integer},
      {"SMALLINT", DataType::Integer},
      {"TINYINT", DataType::Integer},
      {"MEDIUMINT", DataType::Integer},
      {"REAL", DataType::Double},
      {"FLOAT", DataType::Double},
      {"DOUBLE", DataType::Double},
      {"DOUBLE PRECISION", DataType::Double},
      {"TEXT", DataType::WChar},
      {"CHAR", DataType::WChar},
      {"CHARACTER", DataType::WChar},
      {"VARCHAR", DataType::WChar},
      {"NCHAR", DataType::WChar},
      {"NVARCHAR", DataType::WChar},
      {"CLOB", DataType::WChar},
      {"TIMESTAMP", DataType::DBTimeStamp},
      {"DATETIME", DataType::DBTimeStamp},
      {"DATE", DataType::DBDate},
      {"TIME", DataType::DBTime},
      {"BOOLEAN", DataType::Boolean},
      {"BOOL", DataType::Boolean},
      {"BIT", DataType::Boolean},
      {"BLOB", DataType::Binary},
      {"BINARY", DataType::Binary},
      {"VARBINARY", DataType::Binary},
      {"NUMERIC", DataType::Numeric},
      {"DECIMAL", DataType::Numeric},
      {"DEC", DataType::Numeric},
      {"GUID", DataType::Guid},
      {"UUID", DataType::Guid},
      {"UNIQUEIDENTIFIER", DataType::Guid},
      {"", DataType::Empty},
      {"anything", DataType::Empty},
      {"(5)", DataType::Empty},
      // Case, lengths and blanks do not matter.
      {"timestamp", DataType::DBTimeStamp},
      {"Decimal(10, 2)", DataType::Numeric},
      {"varchar (255)", DataType::WChar},
      {" double\t precision ", DataType::Double},
      // Otherwise the words in the name decide, as they do for how SQLite stores.
      {"POINT", DataType::BigInt},
      {"VARYING CHARACTER(20)", DataType::WChar},
      {"LONGTEXT", DataType::WChar},
      {"TINYBLOB", DataType::Binary},
      {"LONG DOUBLE", DataType::Double},
  };
  for (const auto& [sType, type] : cases) EXPECT_EQ(TypeOfDeclaration(sType), type) << sType;
}

TEST(SqliteTypes, stored_texts_of_dates_times_and_guids_come_out_typed) {
  const std::vector<std::pair<DataType, std::string>> cases = {
      {DataType::DBDate, "2024-02-29"}, {DataType::DBDate, "0001-01-01"},
      {DataType::DBTime, "00:00:00"},   {DataType::DBTime, "23:59:59.000001"},
      {DataType::DBTime, "12:30:00.5"}, {DataType::Guid, "{01234567-89AB-CDEF-0123-456789ABCDEF}"},
  };
  for (const auto& [type, sText] : cases) {
    const Value vtValue = FromStoredText(type, sText);
    EXPECT_EQ(vtValue.As<platform::Text>(), nullptr) << sText;
    EXPECT_EQ(platform::ToText(vtValue), sText);
  }
}

TEST(SqliteTypes, stored_texts_in_another_spelling_stay_texts) {
  const std::vector<std::pair<DataType, std::string>> cases = {
      {DataType::DBDate, "2023-02-29"},
      {DataType::DBDate, "2024-2-29"},
      {DataType::DBDate, "2024/02/29"},
      {DataType::DBDate, "+024-02-29"},
      {DataType::DBDate, "2024-02--9"},
      {DataType::DBDate, "yesterday!"},
      {DataType::DBDate, ""},
      {DataType::DBTime, "24:00:00"},
      {DataType::DBTime, "12:60:00"},
      {DataType::DBTime, "12:00:60"},
      {DataType::DBTime, "12:00"},
      {DataType::DBTime, "12:30:00.500"},
      {DataType::DBTime, "12:30:00."},
      {DataType::DBTime, "12:30:00,5"},
      {DataType::DBTime, "12:30:00.1234567"},
      {DataType::Guid, "{01234567-89ab-cdef-0123-456789abcdef}"},
      {DataType::Guid, "01234567-89AB-CDEF-0123-456789ABCDEF"},
      {DataType::Guid, "0123456789ABCDEF0123456789ABCDEF"},
      {DataType::Guid, "{01234567-89AB-CDEF-0123-456789ABCDEG}"},
      {DataType::Guid, "{}"},
  };
  for (const auto& [type, sText] : cases) {
    EXPECT_TRUE(FromStoredText(type, sText) == Value(sText)) << sText;
  }
}

}  // namespace
}  // namespace orvane::provider::engines
