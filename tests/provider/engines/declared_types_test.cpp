#include "provider/engines/declared_types.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane::provider::engines {
namespace {

using platform::DataType;

TEST(DeclaredTypes, declared_types_have_their_column_types) {
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

}  // namespace
}  // namespace orvane::provider::engines
