// Any file may be imported: its rows are read, or the first line that cannot be is refused with a
// sentence. What was read and is written again with every field in quotes is read as the same; and
// as rows of a table each line gives a value of its column's type, or null.
#include "exports/csv_reader.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "exports/row_import.h"
#include "platform/failure.h"
#include "platform/utf8.h"

namespace {

using namespace orvane;
using exports::CsvField;
using exports::CsvReader;
using Rows = std::vector<std::vector<CsvField>>;

constexpr std::size_t kMostBytes = 4096;

// Ends where a line is refused; false then.
bool Read(const std::string& sBytes, char cSeparator, std::size_t mostBytes, Rows& rows) {
  std::istringstream stream(sBytes);
  try {
    CsvReader reader(stream, cSeparator);
    reader.MostBytes(mostBytes);
    std::int64_t llLine = 0;
    while (auto row = reader.Next()) {
      std::size_t bytes = 0;
      for (const CsvField& field : *row) bytes += field.sText.size();
      if (reader.Line() <= llLine || bytes > mostBytes) std::abort();
      llLine = reader.Line();
      rows.push_back(*std::move(row));
    }
    return true;
  } catch (const platform::Failure& failed) {
    const platform::Text& sSentence = failed.Description();
    if (failed.Number() != platform::failure::kInvalidArgument || !sSentence.starts_with("Line ") ||
        !sSentence.ends_with("; nothing was imported.")) {
      std::abort();
    }
    return false;
  }
}

std::string Written(const Rows& rows, char cSeparator) {
  std::string sWritten;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (i > 0) sWritten += cSeparator;
      sWritten += '"';
      for (const char c : row[i].sText) sWritten += c == '"' ? "\"\"" : std::string(1, c);
      sWritten += '"';
    }
    sWritten += "\r\n";
  }
  return sWritten;
}

void ReadBack(const std::string& sBytes) {
  std::istringstream stream(sBytes);
  const char cSeparator = exports::SeparatorOf(stream);
  if (stream.tellg() != std::streampos(0)) std::abort();
  Rows rows;
  Read(sBytes, cSeparator, kMostBytes, rows);
  Rows again;
  if (!Read(Written(rows, cSeparator), cSeparator, kMostBytes, again)) std::abort();
  if (again.size() != rows.size()) std::abort();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (again[i].size() != rows[i].size()) std::abort();
    for (std::size_t j = 0; j < rows[i].size(); ++j) {
      if (again[i][j].sText != rows[i][j].sText) std::abort();
    }
  }
}

void Import(const std::string& sBytes) {
  using platform::DataType;
  static const std::vector<exports::ImportColumn> kColumns{
      {"a", DataType::WChar},   {"b", DataType::BigInt},      {"c", DataType::Double},
      {"d", DataType::Boolean}, {"e", DataType::DBTimeStamp}, {"f", DataType::DBDate},
      {"g", DataType::DBTime},  {"h", DataType::Binary},      {"i", DataType::Guid},
      {"j", DataType::Numeric}, {"k", DataType::Integer},     {"l", DataType::Empty}};
  static const zones::TimeZone kZone("Europe/Berlin");
  std::istringstream stream(sBytes);
  try {
    exports::RowImport rows(stream, "T", kColumns, kZone);
    std::vector<platform::Value> values;
    while (rows.Next(values)) {
      if (values.size() != rows.Columns().size()) std::abort();
    }
  } catch (const platform::Failure& failed) {
    if (failed.Number() != platform::failure::kInvalidArgument || failed.Description().empty() ||
        !platform::IsUtf8(failed.Description())) {
      std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string sBytes(reinterpret_cast<const char*>(data), size);
  ReadBack(sBytes);
  Import(sBytes);
  return 0;
}
