// Many rows in one statement: an INSERT of one row of parameters becomes one that takes an array
// for each column. Only what stores the very same as running it row by row is made so; how it fails
// may differ. Used by PostgresBatch; pure functions and values, any thread.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "provider/engines/postgres/postgres_parameters.h"

namespace orvane::provider::engines {

/// INSERT INTO table (columns) VALUES ($1, $2 ...), with or without ON CONFLICT behind it.
struct PostgresInsert {
  platform::Text sBefore;  ///< what stands before VALUES
  platform::Text sTable;   ///< as it is written
  platform::Text sBehind;  ///< what stands behind the values
};

/// Nothing for a statement of any other form.
std::optional<PostgresInsert> ReadInsert(const NumberedText& text);

/// Takes the table's name as it is written, and the numbers of the parameters' types as an array;
/// gives the names of these types, in their order, when the table is one that takes many rows at
/// once as it takes one after the other, and no row otherwise.
extern const char* const kTakesArrays;

/// Rows of values as one array for each column.
class PostgresArrays {
 public:
  /// Of the statement of one row: the types that its parameters were declared with, and the names
  /// of those that the server has made of them.
  PostgresArrays(std::vector<Oid> declared, std::vector<platform::Text> typeNames)
      : m_declared(std::move(declared)), m_names(std::move(typeNames)) {}

  /// The statement for many rows.
  platform::Text Statement(const PostgresInsert& insert) const;
  /// The parameters of that; nothing when a value is of another type than its parameter.
  std::optional<std::vector<BinaryParameter>> Take(
      std::span<const std::vector<platform::Value>> rows) const;

 private:
  std::vector<Oid> m_declared;
  std::vector<platform::Text> m_names;
};

}  // namespace orvane::provider::engines
