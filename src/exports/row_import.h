// The rows of a file of comma-separated values (or with semicolons or tabs instead, which the first
// line tells) as values for the columns of a table: columns are matched by name, every value is
// checked against its column's type. Used by the import of grids and of programs without a window;
// one thread at a time.
#pragma once

#include <chrono>
#include <span>

#include "exports/csv_reader.h"
#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::exports {

struct ImportColumn {
  platform::Text sName;
  platform::DataType type = platform::DataType::Empty;
  bool bComputed = false;  ///< by the table from other columns: it takes no value
  bool bRounds = false;    ///< keeps no more digits than a double or a 64-bit integer has
  bool bBeyond = false;    ///< takes what platform::ReadBeyond reads
};

class RowImport {
 public:
  /// Reads the first line. Fails with failure::kInvalidArgument when it names a column that the
  /// table lacks or computes, one twice, or none. The stream must outlive the import. Times without
  /// an offset are those of the zone.
  RowImport(std::istream& stream, const platform::Text& sTable,
            std::span<const ImportColumn> columnsOfTable, zones::TimeZone zone);

  /// Those that the first line names, in its order and spelled as in the table.
  const std::vector<ImportColumn>& Columns() const { return m_columns; }
  /// The values of the next row, one for each column, as the column stores them; false at the end.
  /// Fails with failure::kInvalidArgument and the number of the line when one is of another type. A
  /// field without anything, not even quotes, is null.
  bool Next(std::vector<platform::Value>& values);
  /// Called while a failure is handled: fails on with the line of its row where it is one of a row
  /// (platform::RowFailure) that could not be stored as it is, otherwise with the failure itself.
  [[noreturn]] void RethrowOfRow() const;

 private:
  void ReadHeader(const platform::Text& sTable, std::span<const ImportColumn> columnsOfTable);
  platform::Value ReadField(const CsvField& field, const ImportColumn& column) const;

  CsvReader m_reader;
  zones::TimeZone m_zone;
  platform::Timestamp m_now =
      std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  std::vector<ImportColumn> m_columns;
  std::int64_t m_llRows = 0;
  std::vector<std::int64_t> m_lines;  // of the last rows, by their numbers around
};

}  // namespace orvane::exports
