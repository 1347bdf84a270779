// Comma-separated values: fields in quotes may hold separators, line breaks and doubled quotes;
// lines end in LF or CRLF; a byte-order mark at the start is skipped.
#pragma once

#include <istream>
#include <optional>
#include <vector>

#include "platform/types.h"

namespace orvane::exports {

struct CsvField {
  platform::Text sText;
  platform::Boolean bQuoted = false;
};

class CsvReader {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{1} << 28;

  /// The stream must outlive the reader.
  explicit CsvReader(std::istream& stream, char cSeparator = ',');

  /// The next record, none at the end. Lines without anything in them are skipped. Fails with
  /// failure::kInvalidArgument and the number of the line for a quote in the wrong place, a quote
  /// that is never closed, a zero byte outside of quotes, for bytes that are no UTF-8, and for a
  /// record that is too long to be one.
  std::optional<std::vector<CsvField>> Next();
  /// From now on lines without anything in them are records of one empty field.
  void KeepEmptyLines(bool bKeep) { m_bEmptyLines = bKeep; }
  /// From now on a longer record is refused: it belongs to a quote that is not meant as one, or to
  /// no text at all. kMostBytes at first.
  void MostBytes(std::size_t bytes) { m_mostBytes = bytes; }
  /// The line on which the last record began, from 1.
  std::int64_t Line() const { return m_llRecordLine; }

 private:
  int Get();
  CsvField ReadField();
  void ReadQuoted(CsvField& field);
  void Append(CsvField& field, int c);
  [[noreturn]] void Fail(std::int64_t llLine, const platform::Text& sWhat) const;

  std::streambuf* m_buffer;
  char m_cSeparator;
  std::int64_t m_llLine = 1;
  std::int64_t m_llRecordLine = 0;
  bool m_bEmptyLines = false;
  std::size_t m_mostBytes = kMostBytes;
  std::size_t m_bytes = 0;  ///< of the record
  int m_nEnd = 0;           ///< what ended the last field: the separator, '\n' or the stream's end
};

/// What separates the fields of the stream's first line: a tab or a semicolon where there is one
/// outside of quotes and no comma, otherwise a comma. The stream stays where it is; one that cannot
/// go back is taken for one with commas.
char SeparatorOf(std::istream& stream);

/// The failure for a line of a file: "Line 7: <what>; nothing was imported."
[[noreturn]] void FailLine(std::int64_t llLine, const platform::Text& sWhat);

}  // namespace orvane::exports
