// An export: rows as they come, written in one form into one file, which is there when all of them
// are. Used by the grids and by programs without a window; one thread at a time.
#pragma once

#include <functional>
#include <optional>

#include "exports/export_file.h"
#include "exports/row_writer.h"

namespace orvane::exports {

/// What came of an export.
struct Exported {
  platform::RowIndex rows = 0;
  std::filesystem::path path;  ///< of the file, which has another name when rows are missing
  bool bCut = false;           ///< the source had more rows
};

class RowExport {
 public:
  /// Fails with failure::kStorage when the file cannot be made.
  RowExport(WriterOptions options, std::filesystem::path path);

  /// The columns of the rows to come; without a list, all of the recordset.
  void Begin(const platform::Recordset& rs,
             std::optional<std::vector<platform::ColumnIndex>> columns = std::nullopt);
  /// One row of a recordset with the fields of the one that was begun with, which is done here when
  /// it was not. Fails with failure::kStorage.
  void Row(const platform::Recordset& rs, platform::RowIndex row);
  /// All rows of the recordset.
  void Rows(const platform::Recordset& rs);
  platform::RowIndex RowCount() const { return m_rows; }

  /// Gives the file its name. When the source had more rows, that says so: "Data.csv" becomes
  /// "Data (first 100 rows).csv", and a file of the name that was asked for stays as it is. Waits
  /// for the disk, and fails as ExportFile::Finish does.
  Exported Finish(bool bCut, const std::stop_token& stop = {});

 private:
  void Flush();

  std::unique_ptr<RowWriter> m_writer;
  std::filesystem::path m_path;
  ExportFile m_file;
  platform::Text m_sBuffer;
  platform::RowIndex m_rows = 0;
  bool m_bBegun = false;
};

/// "first 1 row", "first 12,400 rows".
platform::Text CutMark(platform::RowIndex rows);

}  // namespace orvane::exports
