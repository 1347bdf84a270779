#include "exports/csv_reader.h"

#include <string_view>

#include "platform/failure.h"
#include "platform/utf8.h"

namespace orvane::exports {
namespace {

using platform::Text;

constexpr int kEnd = std::char_traits<char>::eof();

}  // namespace

CsvReader::CsvReader(std::istream& stream, char cSeparator)
    : m_buffer(stream.rdbuf()), m_cSeparator(cSeparator) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  for (std::size_t i = 0; i < kMark.size(); ++i) {
    if (m_buffer->sgetc() != static_cast<unsigned char>(kMark[i])) {
      // What looked like a mark belongs to the text.
      while (i-- > 0) m_buffer->sungetc();
      break;
    }
    m_buffer->sbumpc();
  }
}

int CsvReader::Get() {
  int c = m_buffer->sbumpc();
  if (c == '\r' && m_buffer->sgetc() == '\n') c = m_buffer->sbumpc();
  if (c == '\n') ++m_llLine;
  if (c == 0) Fail(m_llLine, "there is a zero byte");
  return c;
}

std::optional<std::vector<CsvField>> CsvReader::Next() {
  for (;;) {
    if (m_buffer->sgetc() == kEnd) return std::nullopt;
    m_llRecordLine = m_llLine;
    m_bytes = 0;
    std::vector<CsvField> fields;
    do {
      fields.push_back(ReadField());
    } while (m_nEnd == m_cSeparator);
    const bool bEmpty =
        fields.size() == 1 && fields.front().sText.empty() && !fields.front().bQuoted;
    if (!bEmpty || m_bEmptyLines) return fields;
  }
}

CsvField CsvReader::ReadField() {
  CsvField field;
  if (m_buffer->sgetc() == '"') {
    ReadQuoted(field);
  } else {
    int c = Get();
    for (; c != m_cSeparator && c != '\n' && c != kEnd; c = Get()) {
      if (c == '"') {
        Fail(m_llLine, "a quote stands inside of a field that does not begin with one");
      }
      Append(field, c);
    }
    m_nEnd = c;
  }
  if (!platform::IsUtf8(field.sText)) Fail(m_llRecordLine, "a field is no UTF-8 text");
  return field;
}

void CsvReader::Append(CsvField& field, int c) {
  if (++m_bytes > m_mostBytes) Fail(m_llRecordLine, "it is too long for a row");
  field.sText += static_cast<char>(c);
}

void CsvReader::ReadQuoted(CsvField& field) {
  field.bQuoted = true;
  const std::int64_t llOpened = m_llLine;
  Get();
  for (;;) {
    // Inside of quotes a line break is kept as it is.
    const int c = m_buffer->sbumpc();
    if (c == kEnd) Fail(llOpened, "a quote is opened and never closed");
    if (c == '\n') ++m_llLine;
    if (c == '"') {
      if (m_buffer->sgetc() != '"') break;
      m_buffer->sbumpc();
    }
    Append(field, c);
  }
  m_nEnd = Get();
  if (m_nEnd != m_cSeparator && m_nEnd != '\n' && m_nEnd != kEnd) {
    Fail(m_llLine, "something follows a closing quote");
  }
}

void CsvReader::Fail(std::int64_t llLine, const Text& sWhat) const {
  FailLine(llLine, sWhat);
}

char SeparatorOf(std::istream& stream) {
  constexpr int kMostLookedAt = 1 << 16;
  std::streambuf& buffer = *stream.rdbuf();
  const auto start = buffer.pubseekoff(0, std::ios::cur, std::ios::in);
  if (start == std::streambuf::pos_type(-1)) return ',';
  bool bQuoted = false;
  Text sFound;
  for (int i = 0; i < kMostLookedAt; ++i) {
    const int c = buffer.sbumpc();
    if (c == kEnd || (c == '\n' && !bQuoted)) break;
    if (c == '"') bQuoted = !bQuoted;
    if (!bQuoted && (c == ',' || c == ';' || c == '\t')) sFound += static_cast<char>(c);
  }
  buffer.pubseekpos(start, std::ios::in);
  if (sFound.empty() || sFound.find(',') != Text::npos) return ',';
  return sFound.find('\t') != Text::npos ? '\t' : ';';
}

void FailLine(std::int64_t llLine, const Text& sWhat) {
  throw platform::Failure(
      platform::failure::kInvalidArgument,
      "Line " + std::to_string(llLine) + ": " + sWhat + "; nothing was imported.");
}

}  // namespace orvane::exports
