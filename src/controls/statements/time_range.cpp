#include "controls/statements/time_range.h"

#include <array>
#include <string_view>

#include "platform/quoting.h"
#include "zones/clock_input.h"

namespace orvane::controls {

using platform::QuotedName;
using platform::QuotedText;
using platform::Text;
using platform::Timestamp;

namespace {

/// Reads a condition from left to right, piece by piece.
class ConditionText {
 public:
  explicit ConditionText(std::string_view sText) : m_sRest(sText) { SkipBlanks(); }

  bool Take(std::string_view sPiece) {
    if (!m_sRest.starts_with(sPiece)) return false;
    m_sRest.remove_prefix(sPiece.size());
    return true;
  }
  bool TakeWord(std::string_view sWord) {
    if (m_sRest.size() < sWord.size()) return false;
    for (std::size_t i = 0; i < sWord.size(); ++i) {
      const char c = m_sRest[i];
      if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != sWord[i]) return false;
    }
    m_sRest.remove_prefix(sWord.size());
    SkipBlanks();
    return true;
  }
  /// A text in single quotes that holds none.
  std::optional<Text> TakeText() {
    if (!Take("'")) return std::nullopt;
    const std::size_t end = m_sRest.find('\'');
    if (end == std::string_view::npos) return std::nullopt;
    Text sText(m_sRest.substr(0, end));
    m_sRest.remove_prefix(end + 1);
    if (m_sRest.starts_with('\'')) return std::nullopt;
    SkipBlanks();
    return sText;
  }
  void SkipBlanks() {
    m_sRest.remove_prefix(std::min(m_sRest.find_first_not_of(" \t\r\n"), m_sRest.size()));
  }
  bool AtEnd() const { return m_sRest.empty(); }
  char Next() const { return AtEnd() ? '\0' : m_sRest.front(); }

 private:
  std::string_view m_sRest;
};

bool TakeColumn(ConditionText& condition, const Text& sColumn) {
  if (condition.Take(QuotedName(sColumn))) {
    condition.SkipBlanks();
    return true;
  }
  if (sColumn.empty() || !condition.Take(sColumn)) return false;
  const char c = condition.Next();
  const bool bGoesOn = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '_' || c == '.' || c == '(' || static_cast<unsigned char>(c) >= 0x80;
  condition.SkipBlanks();
  return !bGoesOn;
}

std::optional<TimeRange> MovedBy(const TimeRange& range, const Clock& clock, int nWidths) {
  const auto read = ReadTimeRange(range, clock);
  const auto* span = std::get_if<TimeSpan>(&read);
  if (span == nullptr || !span->from || !span->to || *span->from == *span->to) return std::nullopt;
  const auto moved = [&]() -> std::array<Timestamp, 2> {
    const auto from = clock.zone.ToLocal(*span->from);
    const auto to = clock.zone.ToLocal(*span->to);
    if (date::floor<date::days>(from) == from && date::floor<date::days>(to) == to) {
      const auto days = (to - from) * nWidths;
      return {clock.zone.ToTimestamp(from + days), clock.zone.ToTimestamp(to + days)};
    }
    const auto width = (*span->to - *span->from) * nWidths;
    return {*span->from + width, *span->to + width};
  }();
  if (!zones::IsInRange(moved[0]) || !zones::IsInRange(moved[1])) return std::nullopt;
  return TimeRange{zones::ClockText(moved[0], clock.zone), zones::ClockText(moved[1], clock.zone)};
}

}  // namespace

std::variant<TimeSpan, TimeRangeError> ReadTimeRange(const TimeRange& range, const Clock& clock) {
  TimeSpan span;
  for (const bool bTo : {false, true}) {
    const Text& sText = bTo ? range.sTo : range.sFrom;
    if (sText.find_first_not_of(" \t") == Text::npos) continue;
    const auto read = zones::ReadTimeExpression(sText, clock.zone, clock.now);
    if (const auto* error = std::get_if<zones::TimeExpressionError>(&read)) {
      return TimeRangeError{
          bTo, Text(bTo ? "The end" : "The start") + " is no time: " + error->sReason + "."};
    }
    (bTo ? span.to : span.from) = std::get<Timestamp>(read);
  }
  if (span.from && span.to && *span.from > *span.to) {
    return TimeRangeError{true, "The end lies before the start; put the later time last."};
  }
  return span;
}

Text ConditionOf(const TimeRange& range, const Text& sColumn) {
  if (range.sFrom.empty() && range.sTo.empty()) return {};
  if (range.sTo.empty()) return QuotedName(sColumn) + " >= " + QuotedText(range.sFrom);
  if (range.sFrom.empty()) return QuotedName(sColumn) + " <= " + QuotedText(range.sTo);
  return QuotedName(sColumn) + " BETWEEN " + QuotedText(range.sFrom) + " AND " +
         QuotedText(range.sTo);
}

std::optional<TimeRange> RangeIn(const Text& sCondition, const Text& sColumn) {
  ConditionText condition(sCondition);
  if (!TakeColumn(condition, sColumn)) return std::nullopt;
  TimeRange range;
  const bool bBetween = condition.TakeWord("BETWEEN");
  const bool bFrom = bBetween || condition.TakeWord(">=");
  if (!bFrom && !condition.TakeWord("<=")) return std::nullopt;
  auto text = condition.TakeText();
  if (!text) return std::nullopt;
  (bFrom ? range.sFrom : range.sTo) = *text;
  if (bBetween) {
    if (!condition.TakeWord("AND")) return std::nullopt;
    text = condition.TakeText();
    if (!text) return std::nullopt;
    range.sTo = *text;
  }
  if (!condition.AtEnd()) return std::nullopt;
  return range;
}

std::optional<TimeRange> RangeBefore(const TimeRange& range, const Clock& clock) {
  return MovedBy(range, clock, -1);
}

std::optional<TimeRange> RangeBehind(const TimeRange& range, const Clock& clock) {
  return MovedBy(range, clock, 1);
}

}  // namespace orvane::controls
