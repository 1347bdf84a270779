// Comma-separated values: fields in quotes may hold commas, line breaks and doubled quotes; lines
// end in LF or CRLF; a byte-order mark at the start is skipped.
#pragma once

#include <istream>
#include <optional>
#include <vector>

#include "platform/types.h"

namespace orvane::tools {

struct CsvField {
  platform::Text sText;
  platform::Boolean bQuoted = false;
};

class CsvReader {
 public:
  /// The stream must outlive the reader.
  explicit CsvReader(std::istream& stream);

  /// The next record, none at the end. Lines without anything in them are skipped. Fails with
  /// failure::kInvalidArgument and the number of the line for a quote in the wrong place, a quote
  /// that is never closed, a zero byte, and for bytes that are no UTF-8.
  std::optional<std::vector<CsvField>> Next();
  /// The line on which the last record began, from 1.
  std::int64_t Line() const { return m_llRecordLine; }

 private:
  int Get();
  CsvField ReadField();
  void ReadQuoted(CsvField& field);
  [[noreturn]] void Fail(std::int64_t llLine, const platform::Text& sWhat) const;

  std::streambuf* m_buffer;
  std::int64_t m_llLine = 1;
  std::int64_t m_llRecordLine = 0;
  int m_nEnd = 0;  ///< what ended the last field: ',', '\n' or the stream's end
};

/// The failure for a line of a file: "Line 7: <what>; nothing was imported."
[[noreturn]] void FailLine(std::int64_t llLine, const platform::Text& sWhat);

}  // namespace orvane::tools
