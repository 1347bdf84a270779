#include "provider/dialect/written_times.h"

#include <algorithm>
#include <array>

namespace orvane::provider::dialect {
namespace {

using platform::Text;

struct Written {
  char cLetter;
  std::string_view sShape;
};

constexpr std::array<Written, 20> kWritten = {
    {{'Y', "\1\1\1\1"}, {'G', "\1\1\1\1"}, {'F', kDayShape},     {'g', "\1\1"},
     {'m', "\2\2"},     {'j', "\3\3\3"},   {'U', "\2\2"},        {'V', "\2\2"},
     {'W', "\2\2"},     {'d', "\3\3"},     {'u', "\3"},          {'w', "\3"},
     {'H', "\4\4"},     {'I', "\4\4"},     {'R', "\4\4:\5\5"},   {'T', "\4\4:\5\5:\6\6"},
     {'M', "\5\5"},     {'S', "\6\6"},     {'f', "\6\6.\6\6\6"}, {'%', "%"}}};

bool IsDigitOf(char c) {
  return c >= '0' && c <= '9';
}

bool IsField(char c) {
  return c >= '\1' && c <= '\6';
}

bool StandsForDigit(char c) {
  return IsField(c) || IsDigitOf(c);
}

bool IsOpen(std::string_view sShape) {
  return sShape.ends_with(kAnythingFollows);
}

std::string_view Closed(std::string_view sShape) {
  return IsOpen(sShape) ? sShape.substr(0, sShape.size() - 1) : sShape;
}

// Where the first field ends, with what stands before it.
std::size_t FirstField(std::string_view sShape) {
  std::size_t n = 0;
  while (n < sShape.size() && !IsField(sShape[n])) ++n;
  const std::size_t nBegin = n;
  while (n < sShape.size() && sShape[n] == sShape[nBegin]) ++n;
  return n;
}

bool Matches(std::string_view sShape, std::string_view sText) {
  const std::size_t nShared = std::min(sText.size(), sShape.size());
  for (std::size_t i = 0; i < nShared; ++i) {
    if (StandsForDigit(sShape[i]) ? !IsDigitOf(sText[i]) : sText[i] != sShape[i]) return false;
  }
  return true;
}

}  // namespace

Text ShapeOfFormat(std::string_view sFormat) {
  Text sShape;
  for (std::size_t i = 0; i < sFormat.size(); ++i) {
    if (sFormat[i] > '\0' && sFormat[i] <= kAnythingFollows) return {};
    if (sFormat[i] != '%') {
      sShape += sFormat[i];
      continue;
    }
    const char cLetter = ++i < sFormat.size() ? sFormat[i] : '\0';
    const auto* const written = std::ranges::find(kWritten, cLetter, &Written::cLetter);
    if (written == kWritten.end()) return {};
    sShape += written->sShape;
  }
  return sShape;
}

Text ShapeOfText(const Text& sText) {
  const bool bFields =
      std::ranges::any_of(sText, [](char c) { return IsField(c) || c == kAnythingFollows; });
  return bFields ? Text() : sText;
}

bool BeginsWithYear(std::string_view sShape) {
  constexpr std::size_t kYear = 4;
  if (sShape.size() < kYear) return false;
  return std::ranges::all_of(sShape.substr(0, kYear),
                             [](char c) { return c == '\1' || IsDigitOf(c); });
}

bool SortsAsTimes(std::string_view sShape) {
  char cLast = '\0';
  for (std::size_t i = 0; i < sShape.size(); ++i) {
    if (!IsField(sShape[i])) continue;
    // The same field goes on, as the fraction of a second does.
    const bool bGoesOn = sShape[i] == cLast && (StandsForDigit(sShape[i - 1]) || cLast == '\6');
    if (sShape[i] < cLast || (sShape[i] == cLast && !bGoesOn)) return false;
    cLast = sShape[i];
  }
  return !sShape.empty();
}

bool LooksLikeNoNumber(std::string_view sShape) {
  const auto sign = sShape.find_first_of("-:/");
  return sign != std::string_view::npos && sign > 0;
}

bool CanBegin(std::string_view sShape, std::string_view sText) {
  const std::string_view sClosed = Closed(sShape);
  if (!Matches(sClosed, sText) || sText.size() < FirstField(sClosed)) return false;
  if (sText.size() <= sClosed.size() || IsOpen(sShape)) return true;
  return SortsAsTimes(sShape) && (BeginsWithYear(sShape) || sText[sClosed.size()] == ':');
}

bool CanBe(std::string_view sShape, std::string_view sText) {
  const std::string_view sClosed = Closed(sShape);
  if (!Matches(sClosed, sText)) return false;
  return IsOpen(sShape) ? sText.size() >= sClosed.size() : sText.size() == sClosed.size();
}

bool HaveOneFormat(std::string_view sShape, std::string_view sOther) {
  const std::string_view sOne = Closed(sShape);
  const std::string_view sTwo = Closed(sOther);
  return std::equal(sOne.begin(), sOne.begin() + std::min(sOne.size(), sTwo.size()), sTwo.begin(),
                    [](char cOne, char cTwo) {
                      return cOne == cTwo || (StandsForDigit(cOne) && StandsForDigit(cTwo));
                    });
}

bool BeginsAsWritten(std::string_view sText) {
  return sText.empty() || sText.front() == '-' || IsDigitOf(sText.front());
}

bool BeginsAsDate(std::string_view sText) {
  return sText.size() > 5 && std::all_of(sText.begin(), sText.begin() + 4, IsDigitOf) &&
         sText[4] == '-' && IsDigitOf(sText[5]);
}

}  // namespace orvane::provider::dialect
