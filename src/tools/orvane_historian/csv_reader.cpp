#include "tools/orvane_historian/csv_reader.h"

#include <string_view>

#include "platform/failure.h"
#include "platform/utf8.h"

namespace orvane::tools {
namespace {

using platform::Text;

constexpr int kEnd = std::char_traits<char>::eof();

}  // namespace

CsvReader::CsvReader(std::istream& stream) : m_buffer(stream.rdbuf()) {
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
    std::vector<CsvField> fields;
    do {
      fields.push_back(ReadField());
    } while (m_nEnd == ',');
    if (fields.size() == 1 && fields.front().sText.empty() && !fields.front().bQuoted) continue;
    return fields;
  }
}

CsvField CsvReader::ReadField() {
  CsvField field;
  if (m_buffer->sgetc() == '"') {
    ReadQuoted(field);
  } else {
    int c = Get();
    for (; c != ',' && c != '\n' && c != kEnd; c = Get()) {
      if (c == '"') {
        Fail(m_llLine, "a quote stands inside of a field that does not begin with one");
      }
      field.sText += static_cast<char>(c);
    }
    m_nEnd = c;
  }
  if (!platform::IsUtf8(field.sText)) Fail(m_llRecordLine, "a field is no UTF-8 text");
  return field;
}

void CsvReader::ReadQuoted(CsvField& field) {
  field.bQuoted = true;
  const std::int64_t llOpened = m_llLine;
  Get();
  for (;;) {
    // Inside of quotes a line break is kept as it is.
    const int c = m_buffer->sbumpc();
    if (c == kEnd) Fail(llOpened, "a quote is opened and never closed");
    if (c == 0) Fail(m_llLine, "there is a zero byte");
    if (c == '\n') ++m_llLine;
    if (c == '"') {
      if (m_buffer->sgetc() != '"') break;
      m_buffer->sbumpc();
    }
    field.sText += static_cast<char>(c);
  }
  m_nEnd = Get();
  if (m_nEnd != ',' && m_nEnd != '\n' && m_nEnd != kEnd) {
    Fail(m_llLine, "something follows a closing quote");
  }
}

void CsvReader::Fail(std::int64_t llLine, const Text& sWhat) const {
  FailLine(llLine, sWhat);
}

void FailLine(std::int64_t llLine, const Text& sWhat) {
  throw platform::Failure(
      platform::failure::kInvalidArgument,
      "Line " + std::to_string(llLine) + ": " + sWhat + "; nothing was imported.");
}

}  // namespace orvane::tools
