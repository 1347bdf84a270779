#include "tools/orvane_historian/import.h"

#include <algorithm>
#include <chrono>

#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/dialect/lexer.h"
#include "tools/orvane_historian/catalog_database.h"
#include "tools/orvane_historian/csv_reader.h"
#include "tools/orvane_historian/typed_text.h"

namespace orvane::tools {
namespace {

using platform::Failure;
using platform::QuotedName;
using platform::Text;
using platform::Value;
using provider::dialect::SameName;
using provider::engines::ColumnSchema;

// The columns that the header names, in its order.
std::vector<ColumnSchema> ReadHeader(CsvReader& reader,
                                     const provider::engines::TableSchema& table) {
  const auto header = reader.Next();
  if (!header) {
    throw Failure(platform::failure::kInvalidArgument,
                  "The file is empty; its first line must name columns of the table.");
  }
  std::vector<ColumnSchema> columns;
  for (const auto& field : *header) {
    const auto named = [&](const ColumnSchema& column) {
      return SameName(column.sName, field.sText);
    };
    const auto found = std::find_if(table.columns.begin(), table.columns.end(), named);
    if (found == table.columns.end()) {
      FailLine(reader.Line(),
               "the table " + table.sName + " has no column \"" + field.sText + "\"");
    }
    if (std::any_of(columns.begin(), columns.end(), named)) {
      FailLine(reader.Line(), "the column \"" + field.sText + "\" is named twice");
    }
    columns.push_back(*found);
  }
  return columns;
}

Text InsertStatement(const Text& sTable, const std::vector<ColumnSchema>& columns, bool bReplace) {
  Text sNames;
  Text sMarks;
  for (const auto& column : columns) {
    sNames += (sNames.empty() ? "" : ", ") + QuotedName(column.sName);
    sMarks += sMarks.empty() ? "?" : ", ?";
  }
  return Text(bReplace ? "INSERT OR REPLACE" : "INSERT") + " INTO " + QuotedName(sTable) + " (" +
         sNames + ") VALUES (" + sMarks + ")";
}

// A long field is named by its beginning.
Text Shown(const Text& sText) {
  constexpr std::size_t kLongest = 60;
  if (sText.size() <= kLongest) return "\"" + sText + "\"";
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(sText[end]) & 0xC0U) == 0x80U) --end;
  return "\"" + sText.substr(0, end) + "...\"";
}

}  // namespace

std::int64_t Import(const provider::historian::CatalogRecord& record, std::istream& stream,
                    const ImportOrder& order) {
  const auto table = FindTable(record, order.sTable);
  CsvReader reader(stream);
  const auto columns = ReadHeader(reader, table);
  const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
  CatalogDatabase database(record);
  std::int64_t llRows = 0;
  database.InTransaction([&] {
    PreparedStatement insert(database, InsertStatement(table.sName, columns, order.bReplace));
    while (const auto fields = reader.Next()) {
      if (fields->size() != columns.size()) {
        FailLine(reader.Line(), "it has " + std::to_string(fields->size()) +
                                    " fields, but the first line names " +
                                    std::to_string(columns.size()) + " columns");
      }
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto& field = (*fields)[i];
        if (field.sText.empty() && !field.bQuoted) {
          insert << Value();
          continue;
        }
        const auto vtValue = ReadTyped(columns[i].type, field.sText, order.zone, now);
        if (!vtValue) {
          FailLine(reader.Line(), Shown(field.sText) + " is not " +
                                      Text(TypeInWords(columns[i].type)) + " for the column " +
                                      columns[i].sName);
        }
        insert << *vtValue;
      }
      try {
        insert.Run();
      } catch (const Failure& failed) {
        if (failed.Number() != platform::failure::kConstraint) throw;
        Text sWhat = failed.Description();
        while (!sWhat.empty() && sWhat.back() == '.') sWhat.pop_back();
        FailLine(reader.Line(), sWhat);
      }
      ++llRows;
    }
  });
  return llRows;
}

}  // namespace orvane::tools
