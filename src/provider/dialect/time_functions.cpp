#include "provider/dialect/time_functions.h"

#include <cmath>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/dialect/written_times.h"
#include "zones/time_expression.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;
using platform::Timestamp;
using platform::Value;

[[noreturn]] void FailNoTime(const Text& sValue, const Text& sWhy) {
  throw platform::Failure(
      platform::failure::kSqlError,
      sValue + " is compared with a time or stored as one, and is none: " + sWhy + ".", "ORVOLEDB");
}

bool IsNumber(const Value& vtValue) {
  return vtValue.As<std::int64_t>() != nullptr || vtValue.As<double>() != nullptr;
}

Text Shown(const Value& vtValue) {
  if (const auto* const sText = vtValue.As<Text>()) return ShownText(*sText);
  return IsNumber(vtValue) ? platform::ToText(vtValue) : Text("A row of bytes");
}

[[noreturn]] void FailMeeting(const Value& vtValue, const Text& sWith, const Text& sAdvice) {
  throw platform::Failure(platform::failure::kSqlError,
                          Shown(vtValue) + " is compared with " + sWith + "; " + sAdvice + ".",
                          "ORVOLEDB");
}

Value OnlyNumber(const Value& vtValue) {
  if (vtValue.IsNull() || IsNumber(vtValue)) return vtValue;
  FailMeeting(vtValue, "a number made from a time",
              "compare the time itself, as in Timestamp >= '*-1h', or write CAST(... AS REAL)");
}

Value OnlyCount(const Value& vtValue) {
  if (vtValue.IsNull() || IsNumber(vtValue)) return vtValue;
  throw platform::Failure(platform::failure::kSqlError,
                          Shown(vtValue) +
                              " is added to a time or to a number made from one, and is no number; "
                              "write CAST(... AS REAL).",
                          "ORVOLEDB");
}

Value OnlyModifier(const Value& vtValue) {
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr || !TellsUnit(*sText)) return vtValue;
  throw platform::Failure(platform::failure::kSqlError,
                          ShownText(*sText) +
                              " says what a number means, and a stored time is a "
                              "time already; leave it out.",
                          "ORVOLEDB");
}

Value OnlyText(const Value& vtValue) {
  if (vtValue.IsNull() || vtValue.As<Text>() != nullptr) return vtValue;
  FailMeeting(vtValue, "a written time",
              "compare the time itself, as in Timestamp >= '*-1h', or write CAST(... AS TEXT)");
}

Value OnlyWritten(const Value& vtValue, const Text& sShape) {
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr || sText->empty() || CanBegin(sShape, *sText)) return OnlyText(vtValue);
  FailMeeting(vtValue, "a written time",
              "compare the time or the date itself, as in Timestamp >= '*-1h', or with a text of "
              "the same format");
}

Value OnlyPart(const Value& vtValue) {
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr || !BeginsAsDate(*sText)) return OnlyText(vtValue);
  FailMeeting(vtValue, "a part of a time",
              "compare the time itself, as in Timestamp >= '*-1h', or write both in one format");
}

Value ReadText(const Text& sText, const zones::TimeZone& zone, Timestamp now) {
  const auto time = zones::ReadTimeExpression(sText, zone, now);
  if (const auto* const error = std::get_if<zones::TimeExpressionError>(&time)) {
    FailNoTime(ShownText(sText), "at its character " + CharacterNumber(sText, error->position) +
                                     " " + error->sReason);
  }
  return std::get<Timestamp>(time);
}

Value ReadNumber(const Value& vtValue, const TranslationSettings& settings) {
  if (!settings.bTimeAsDouble) {
    FailNoTime(platform::ToText(vtValue), "write a time such as '*-1h'");
  }
  const auto* const ll = vtValue.As<std::int64_t>();
  const double dDays = ll != nullptr ? static_cast<double>(*ll) : *vtValue.As<double>();
  const auto time = settings.zone.FromDays(dDays);
  if (!time) {
    FailNoTime(platform::ToText(vtValue), "a time is a number of days since 1899-12-30");
  }
  return *time;
}

Value WholeTime(const Value& vtValue) {
  constexpr std::int64_t kFirst = -62135596800000000;  // 0001-01-01
  constexpr std::int64_t kEnd = 253402300800000000;    // 10000-01-01
  const auto* const ll = vtValue.As<std::int64_t>();
  const auto* const d = vtValue.As<double>();
  const double dTime = d != nullptr ? std::round(*d) : 0;
  const bool bSound = ll != nullptr ? *ll >= kFirst && *ll < kEnd
                                    : d != nullptr && dTime >= static_cast<double>(kFirst) &&
                                          dTime < static_cast<double>(kEnd);
  if (!bSound) {
    FailNoTime(platform::ToText(vtValue),
               "add a number of microseconds that ends in the years 1 to 9999");
  }
  return ll != nullptr ? *ll : static_cast<std::int64_t>(dTime);
}

}  // namespace

bool TellsUnit(std::string_view sModifier) {
  const Text sUpper = UpperCase(Text(sModifier));
  return sUpper == "UNIXEPOCH" || sUpper == "JULIANDAY" || sUpper == "AUTO";
}

Text ShownText(const Text& sText) {
  constexpr std::size_t kMost = 60;
  if (sText.size() <= kMost) return "'" + sText + "'";
  std::size_t nEnd = kMost;
  while (nEnd > 0 && (static_cast<unsigned char>(sText[nEnd]) & 0xC0U) == 0x80U) --nEnd;
  return "'" + sText.substr(0, nEnd) + "...'";
}

engines::StatementFunction ShapeFunction(const Text& sName, const Text& sShape) {
  return {sName, [sShape](const Value& vtValue) { return OnlyWritten(vtValue, sShape); }};
}

std::vector<engines::StatementFunction> TimeFunctions(const TranslationSettings& settings) {
  const auto read = [settings](const Value& vtValue) -> Value {
    if (vtValue.IsNull()) return {};
    if (const auto* const sText = vtValue.As<Text>()) {
      return ReadText(*sText, settings.zone, settings.now);
    }
    if (IsNumber(vtValue)) return ReadNumber(vtValue, settings);
    FailNoTime("A row of bytes", "write a time such as '*-1h'");
  };
  const auto readUtc = [now = settings.now,
                        utc = zones::TimeZone::Utc()](const Value& vtValue) -> Value {
    if (vtValue.IsNull()) return {};
    return ReadText(platform::ToText(vtValue), utc, now);
  };
  const auto whole = [](const Value& vtValue) -> Value {
    return vtValue.IsNull() ? Value() : WholeTime(vtValue);
  };
  return {{Text(kReadTime), read},       {Text(kReadUtc), readUtc},
          {Text(kWholeTime), whole},     {Text(kOnlyNumber), OnlyNumber},
          {Text(kOnlyText), OnlyText},   {Text(kOnlyPart), OnlyPart},
          {Text(kOnlyCount), OnlyCount}, {Text(kOnlyModifier), OnlyModifier}};
}

}  // namespace orvane::provider::dialect
