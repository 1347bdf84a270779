#include "controls/values/text_sought.h"

#include <algorithm>

namespace orvane::controls {

using platform::ValueKind;

namespace {

constexpr unsigned char kCaseBit = 0x20;

constexpr bool IsSmallLetter(char c) {
  return c >= 'a' && c <= 'z';
}

constexpr char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c | kCaseBit) : c;
}

/// One byte of what is sought, of a letter in either case.
struct SoughtByte {
  unsigned char byte;
  unsigned char caseBit;
  bool Is(char c) const { return (static_cast<unsigned char>(c) | caseBit) == byte; }
};

SoughtByte SoughtAt(char cSmall) {
  constexpr unsigned char kNone = 0;
  return {static_cast<unsigned char>(cSmall), IsSmallLetter(cSmall) ? kCaseBit : kNone};
}

}  // namespace

TextSought::TextSought(const QString& sText) : m_sText(sText) {
  const bool bAscii = std::ranges::all_of(sText, [](QChar c) { return c.unicode() < 0x80; });
  if (!bAscii) return;
  m_sSmall = sText.toLower().toStdString();
  // Digits, signs, "e", and what infinity and no number are written as.
  m_bMayBeNumber = m_sSmall.find_first_not_of("0123456789+-.eainfty") == std::string::npos;
}

// Looks for the first and the last byte of what is sought in as many places at once as the machine
// compares bytes; hardly ever are both there, and only then is the rest compared.
bool TextSought::IsInBytes(std::string_view sBytes) const {
  const std::size_t count = m_sSmall.size();
  if (sBytes.size() < count) return false;
  const SoughtByte first = SoughtAt(m_sSmall.front());
  const SoughtByte last = SoughtAt(m_sSmall.back());
  const auto isAt = [&](std::size_t place) {
    for (std::size_t n = 0; n < count; ++n) {
      if (Small(sBytes[place + n]) != m_sSmall[n]) return false;
    }
    return true;
  };
  constexpr std::size_t kAtOnce = 32;
  const std::size_t places = sBytes.size() - count + 1;
  std::size_t place = 0;
  for (; place + kAtOnce <= places; place += kAtOnce) {
    const char* const begins = sBytes.data() + place;
    const char* const ends = begins + count - 1;
    unsigned char both = 0;
    for (std::size_t n = 0; n < kAtOnce; ++n) {
      const int nBoth = static_cast<int>(first.Is(begins[n])) & static_cast<int>(last.Is(ends[n]));
      both = static_cast<unsigned char>(both | static_cast<unsigned char>(nBoth));
    }
    if (both == 0) continue;
    for (std::size_t n = 0; n < kAtOnce; ++n) {
      if (first.Is(begins[n]) && isAt(place + n)) return true;
    }
  }
  for (; place < places; ++place) {
    if (first.Is(sBytes[place]) && isAt(place)) return true;
  }
  return false;
}

bool TextSought::IsIn(const platform::Value& vtValue, const CellFormat& format) const {
  if (vtValue.IsNull()) return false;
  if (!m_sSmall.empty()) {
    if (const auto* text = vtValue.As<platform::Text>()) return IsInBytes(*text);
  }
  return format.Whole(vtValue).contains(m_sText, Qt::CaseInsensitive);
}

bool TextSought::MayBeIn(const platform::CellRun& run) const {
  if (!run.kind) return true;
  switch (*run.kind) {
    case ValueKind::Null:
      return false;
    case ValueKind::Text:
      // What begins in one text and ends in the next is told apart cell by cell.
      return m_sSmall.empty() || IsInBytes(run.texts);
    case ValueKind::Long:
    case ValueKind::LongLong:
    case ValueKind::Double:
    case ValueKind::Decimal:
      return m_bMayBeNumber;
    case ValueKind::Boolean:
    case ValueKind::Timestamp:
    case ValueKind::WallTime:
    case ValueKind::Date:
    case ValueKind::TimeOfDay:
    case ValueKind::Bytes:
    case ValueKind::Guid:
    case ValueKind::Object:
      return true;
  }
  return true;
}

}  // namespace orvane::controls
