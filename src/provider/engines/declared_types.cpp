#include "provider/engines/declared_types.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace orvane::provider::engines {

using platform::DataType;

namespace {

constexpr std::array<std::pair<std::string_view, DataType>, 40> kDeclaredTypes = {{
    {"BIGINT", DataType::BigInt},
    {"BINARY", DataType::Binary},
    {"BIT", DataType::Boolean},
    {"BLOB", DataType::Binary},
    {"BOOL", DataType::Boolean},
    {"BOOLEAN", DataType::Boolean},
    {"CHAR", DataType::WChar},
    {"CHARACTER", DataType::WChar},
    {"CLOB", DataType::WChar},
    {"DATE", DataType::DBDate},
    {"DATETIME", DataType::DBTimeStamp},
    {"DEC", DataType::Numeric},
    {"DECIMAL", DataType::Numeric},
    {"DOUBLE", DataType::Double},
    {"DOUBLE PRECISION", DataType::Double},
    {"FLOAT", DataType::Double},
    {"GUID", DataType::Guid},
    {"INT", DataType::Integer},
    {"INT2", DataType::Integer},
    {"INT4", DataType::Integer},
    {"INT8", DataType::BigInt},
    {"INTEGER", DataType::BigInt},
    {"MEDIUMINT", DataType::Integer},
    {"NCHAR", DataType::WChar},
    {"NUMERIC", DataType::Numeric},
    {"NVARCHAR", DataType::WChar},
    {"REAL", DataType::Double},
    {"SMALLINT", DataType::Integer},
    {"TEXT", DataType::WChar},
    {"TIME", DataType::DBTime},
    {"TIMESTAMP", DataType::DBTimeStamp},
    {"TIMESTAMP WITH TIME ZONE", DataType::DBTimeStamp},
    {"TIMESTAMP WITHOUT TIME ZONE", DataType::DBTimeStamp},
    {"TIMESTAMPTZ", DataType::DBTimeStamp},
    {"TINYINT", DataType::Integer},
    {"UNIQUEIDENTIFIER", DataType::Guid},
    {"UNSIGNED BIG INT", DataType::BigInt},
    {"UUID", DataType::Guid},
    {"VARBINARY", DataType::Binary},
    {"VARCHAR", DataType::WChar},
}};

// The first row of a type is the one that a table is best declared with.
constexpr TypeSchema kDeclared[] = {
    {"INT", DataType::Integer, 10, nullptr, nullptr, nullptr, true},
    {"SMALLINT", DataType::Integer, 10, nullptr, nullptr, nullptr, false},
    {"DOUBLE", DataType::Double, 15, nullptr, nullptr, nullptr, true},
    {"REAL", DataType::Double, 15, nullptr, nullptr, nullptr, false},
    {"FLOAT", DataType::Double, 15, nullptr, nullptr, nullptr, false},
    {"BOOLEAN", DataType::Boolean, 1, nullptr, nullptr, nullptr, true},
    {"BIGINT", DataType::BigInt, 19, nullptr, nullptr, nullptr, true},
    {"INTEGER", DataType::BigInt, 19, nullptr, nullptr, nullptr, false},
    {"GUID", DataType::Guid, 38, "'", "'", nullptr, true},
    {"BLOB", DataType::Binary, 1'000'000'000, "x'", "'", nullptr, true},
    {"TEXT", DataType::WChar, 1'000'000'000, "'", "'", nullptr, true},
    {"VARCHAR", DataType::WChar, 1'000'000'000, "'", "'", "length", false},
    {"NUMERIC", DataType::Numeric, 15, nullptr, nullptr, "precision,scale", true},
    {"DATE", DataType::DBDate, 10, "'", "'", nullptr, true},
    {"TIME", DataType::DBTime, 15, "'", "'", nullptr, true},
    {"TIMESTAMP", DataType::DBTimeStamp, 26, "'", "'", nullptr, true},
    {"DATETIME", DataType::DBTimeStamp, 26, "'", "'", nullptr, false},
    // A column that was declared without a type takes values of every kind.
    {"ANY", DataType::Empty, 1'000'000'000, nullptr, nullptr, nullptr, true},
};

}  // namespace

std::span<const TypeSchema> DeclaredTypes() {
  return kDeclared;
}

DataType TypeOfDeclaration(std::string_view sDeclaredType) {
  // One upper-case form: no length, single blanks.
  std::string sName;
  for (const char character : sDeclaredType.substr(0, sDeclaredType.find('('))) {
    const bool bBlank =
        character == ' ' || character == '\t' || character == '\r' || character == '\n';
    if (!bBlank) {
      const bool bLower = character >= 'a' && character <= 'z';
      sName.push_back(bLower ? static_cast<char>(character - 'a' + 'A') : character);
    } else if (!sName.empty() && sName.back() != ' ') {
      sName.push_back(' ');
    }
  }
  if (!sName.empty() && sName.back() == ' ') sName.pop_back();

  const auto found = std::ranges::lower_bound(kDeclaredTypes, sName, {},
                                              [](const auto& type) { return type.first; });
  if (found != kDeclaredTypes.end() && found->first == sName) return found->second;

  // Other names go by the words in them, the way SQLite itself chooses how to store.
  const auto has = [&](std::string_view sWord) { return sName.find(sWord) != std::string::npos; };
  if (has("INT")) return DataType::BigInt;
  if (has("CHAR") || has("CLOB") || has("TEXT")) return DataType::WChar;
  if (has("BLOB")) return DataType::Binary;
  if (has("REAL") || has("FLOA") || has("DOUB")) return DataType::Double;
  return DataType::Empty;
}

}  // namespace orvane::provider::engines
