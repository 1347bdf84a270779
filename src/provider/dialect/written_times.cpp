#include "provider/dialect/written_times.h"

#include <algorithm>
#include <array>

namespace orvane::provider::dialect {
namespace {

// Of one letter: what it writes, and from where to where that reaches, 0 for the year and 5 for the
// second.
struct Written {
  char cLetter;
  std::string_view sShape;
  int nFirst;
  int nLast;
};

constexpr std::array<Written, 20> kWritten = {
    {{'Y', "0000", 0, 0}, {'G', "0000", 0, 0}, {'F', "0000-00-00", 0, 2}, {'g', "00", 0, 0},
     {'m', "00", 1, 1},   {'j', "000", 1, 2},  {'U', "00", 1, 1},         {'V', "00", 1, 1},
     {'W', "00", 1, 1},   {'d', "00", 2, 2},   {'u', "0", 2, 2},          {'w', "0", 2, 2},
     {'H', "00", 3, 3},   {'I', "00", 3, 3},   {'R', "00:00", 3, 4},      {'T', "00:00:00", 3, 5},
     {'M', "00", 4, 4},   {'S', "00", 5, 5},   {'f', "00.000", 5, 5},     {'%', "%", -1, -1}}};

bool IsDigitOf(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

WrittenFormat ReadFormat(std::string_view sFormat) {
  WrittenFormat format{true, false, true, {}};
  int nLast = -1;
  for (std::size_t i = 0; i < sFormat.size(); ++i) {
    if (sFormat[i] != '%') {
      format.sShape += sFormat[i];
      // A digit that is written into the format is no digit of a time.
      if (IsDigitOf(sFormat[i])) format.bKnown = false;
      continue;
    }
    const char cLetter = ++i < sFormat.size() ? sFormat[i] : '\0';
    const auto* const written = std::ranges::find(kWritten, cLetter, &Written::cLetter);
    if (written == kWritten.end()) return {};
    if (format.sShape.empty()) format.bFromYear = written->nFirst == 0 && cLetter != 'g';
    format.sShape += written->sShape;
    if (written->nFirst < 0) continue;
    if (written->nFirst <= nLast) format.bSorts = false;
    nLast = written->nLast;
  }
  return format;
}

bool CanBegin(const WrittenFormat& format, std::string_view sText) {
  const std::size_t nShared = std::min(sText.size(), format.sShape.size());
  for (std::size_t i = 0; i < nShared; ++i) {
    const char c = format.sShape[i];
    if (IsDigitOf(c) ? !IsDigitOf(sText[i]) : sText[i] != c) return false;
  }
  return sText.size() <= format.sShape.size() || (format.bFromYear && format.bSorts);
}

bool BeginsAsWritten(std::string_view sText) {
  return sText.empty() || sText.front() == '-' || IsDigitOf(sText.front());
}

bool BeginsAsDate(std::string_view sText) {
  return sText.size() > 5 && std::all_of(sText.begin(), sText.begin() + 4, IsDigitOf) &&
         sText[4] == '-' && IsDigitOf(sText[5]);
}

}  // namespace orvane::provider::dialect
