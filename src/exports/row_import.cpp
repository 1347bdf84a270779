#include "exports/row_import.h"

#include <algorithm>
#include <array>
#include <utility>

#include "exports/typed_text.h"
#include "platform/beyond_values.h"
#include "platform/exact_number.h"
#include "platform/row_failure.h"

namespace orvane::exports {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// Read at once, where somebody may be waiting.
constexpr std::size_t kMostHeaderBytes = std::size_t{1} << 20;
// The row itself, and those that were read ahead of it.
constexpr std::int64_t kLines = platform::kMostRowsAhead + 1;

char UpperOf(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// As the historian tells names apart.
bool IsSameName(const Text& sLeft, const Text& sRight) {
  return std::ranges::equal(sLeft, sRight, {}, UpperOf, UpperOf);
}

// A long field is named by its beginning.
Text ShownField(const Text& sText) {
  constexpr std::size_t kLongest = 60;
  if (sText.size() <= kLongest) return "\"" + sText + "\"";
  std::size_t end = kLongest;
  while (end > 0 && (static_cast<unsigned char>(sText[end]) & 0xC0U) == 0x80U) --end;
  return "\"" + sText.substr(0, end) + "...\"";
}

}  // namespace

RowImport::RowImport(std::istream& stream, const Text& sTable,
                     std::span<const ImportColumn> columnsOfTable, zones::TimeZone zone)
    : m_reader(stream, SeparatorOf(stream)), m_zone(std::move(zone)), m_lines(kLines) {
  ReadHeader(sTable, columnsOfTable);
}

void RowImport::ReadHeader(const Text& sTable, std::span<const ImportColumn> columnsOfTable) {
  m_reader.MostBytes(kMostHeaderBytes);
  const auto header = m_reader.Next();
  m_reader.MostBytes(CsvReader::kMostBytes);
  if (!header) {
    throw Failure(failure::kInvalidArgument,
                  "The file is empty; its first line must name columns of the table.");
  }
  for (const CsvField& field : *header) {
    const auto named = [&](const ImportColumn& column) {
      return IsSameName(column.sName, field.sText);
    };
    const auto found = std::ranges::find_if(columnsOfTable, named);
    if (found == columnsOfTable.end()) {
      FailLine(m_reader.Line(),
               "there is no column \"" + field.sText + "\" in the table " + sTable);
    }
    if (found->bComputed) {
      FailLine(m_reader.Line(), "the column \"" + field.sText +
                                    "\" takes no value, as the table computes it; leave it out");
    }
    if (std::ranges::any_of(m_columns, named)) {
      FailLine(m_reader.Line(), "the column \"" + field.sText + "\" is named twice");
    }
    m_columns.push_back(*found);
  }
  // In a file of one column a line without anything is a row with null.
  m_reader.KeepEmptyLines(m_columns.size() == 1);
}

bool RowImport::Next(std::vector<Value>& values) {
  values.clear();
  const auto fields = m_reader.Next();
  if (!fields) return false;
  m_lines[static_cast<std::size_t>(++m_llRows % kLines)] = m_reader.Line();
  if (fields->size() != m_columns.size()) {
    FailLine(m_reader.Line(), "it has " + std::to_string(fields->size()) +
                                  " fields, but the first line names " +
                                  std::to_string(m_columns.size()) + " columns");
  }
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    values.push_back(ReadField((*fields)[i], m_columns[i]));
  }
  return true;
}

Value RowImport::ReadField(const CsvField& field, const ImportColumn& column) const {
  if (field.sText.empty() && !field.bQuoted) return {};
  if (column.bBeyond) {
    if (auto vtBeyond = platform::ReadBeyond(column.type, field.sText)) return *std::move(vtBeyond);
  }
  auto vtValue = ReadTyped(column.type, field.sText, m_zone, m_now, column.bRounds);
  if (column.bRounds && platform::ReadDigits(field.sText) && !platform::ExactNumber(field.sText)) {
    FailLine(m_reader.Line(), ShownField(field.sText) + " has more digits than the column " +
                                  column.sName + " keeps; 15 always fit");
  }
  if (!vtValue) {
    FailLine(m_reader.Line(), ShownField(field.sText) + " is not " +
                                  Text(TypeInWords(column.type)) + " for the column " +
                                  column.sName);
  }
  return *std::move(vtValue);
}

void RowImport::RethrowOfRow() const {
  try {
    throw;
  } catch (const platform::RowFailure& failed) {
    constexpr std::array kOfRow = {failure::kConstraint, failure::kConflict, failure::kOverflow,
                                   failure::kSqlError, failure::kTypeMismatch};
    const bool bKnown = failed.Row() > m_llRows - kLines && failed.Row() <= m_llRows;
    if (!bKnown || std::ranges::find(kOfRow, failed.Number()) == kOfRow.end()) throw;
    Text sWhat = failed.Number() == failure::kConflict ? "the table has not taken this row"
                                                       : failed.Description();
    while (!sWhat.empty() && sWhat.back() == '.') sWhat.pop_back();
    FailLine(m_lines[static_cast<std::size_t>(failed.Row() % kLines)], sWhat);
  }
}

}  // namespace orvane::exports
