#include "provider/dialect/given_values.h"

#include <type_traits>
#include <utility>
#include <variant>

#include "platform/beyond_values.h"
#include "platform/conversions.h"
#include "platform/row_failure.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Value;

bool IsNullOrNumber(const Value& vtValue) {
  return std::visit(
      [](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        return std::is_same_v<T, platform::Null> || std::is_arithmetic_v<T>;
      },
      vtValue.Content());
}

bool IsNullOrTime(const Value& vtValue) {
  return vtValue.IsNull() || vtValue.As<platform::Timestamp>() != nullptr ||
         vtValue.As<platform::WallTime>() != nullptr;
}

platform::ParameterRows LookedAt(platform::ParameterRows rows, std::vector<GivenValue> given) {
  return [rows = std::move(rows), given = std::move(given),
          llRow = std::int64_t{0}](std::vector<Value>& values) mutable {
    if (!rows(values)) return false;
    ++llRow;
    for (const auto& [parameter, fits, refusal] : given) {
      // Of too few values the engine tells.
      if (parameter < values.size() && !fits(values[parameter])) {
        throw platform::RowFailure(refusal, llRow);
      }
    }
    return true;
  };
}

// Whatever is null with every value unknown has nothing in it but parameters.
void TimeAnalysis::Expect(const Operand& operand, const Fits& fits, const Text& sWhat,
                          const Text& sAdvice) {
  if (KindsOf(operand) != kinds::kNull || IsAsWritten(operand)) return;
  TokenRange range;
  if (operand.expr != nullptr) range = operand.expr->range;
  if (operand.query != nullptr) range = operand.query->range;
  for (std::size_t i = range.begin; i < range.end; ++i) {
    const Token& token = At(i);
    if (token.kind != TokenKind::Parameter || token.nParameter == 0) continue;
    m_given.push_back({token.nParameter - 1, fits,
                       FailureAt(m_place.sStatement, token.position, sWhat, sAdvice)});
  }
}

// What meets a stored time. A server's times without a zone are compared with texts of theirs.
void TimeAnalysis::ExpectTimes(const std::vector<Operand>& operands) {
  const bool bBeyond = Typed() != nullptr && Typed()->bTimesBeyond;
  const auto fits = [bClocks = m_bClocks, bBeyond](const Value& vtValue) {
    const auto* const sText = vtValue.As<Text>();
    if (sText == nullptr) return IsNullOrTime(vtValue);
    return bClocks || (bBeyond && platform::ReadBeyond(platform::DataType::DBTimeStamp, *sText));
  };
  for (const auto& operand : operands) {
    Expect(operand, fits, "What is given for a parameter meets a time, and is none",
           "give a time for it");
  }
}

// What meets what was made from times, of which it is all.
void TimeAnalysis::ExpectMade(const std::vector<Operand>& operands, Kinds all, Comparison how) {
  if (kinds::Has(all, kinds::kNumberOfTime | kinds::kTextOfTime)) {
    const bool bNumbers = !kinds::Has(all, kinds::kTextOfTime) && !TimeAsDouble();
    const auto fits = [bNumbers](const Value& vtValue) {
      return vtValue.IsNull() || (bNumbers && IsNullOrNumber(vtValue));
    };
    for (const auto& operand : operands) {
      Expect(operand, fits, "What was made from a time is compared with something else",
             "compare the time itself, as in Timestamp >= '*-1h'");
    }
  } else if (kinds::Has(all, kinds::kCounts)) {
    for (const auto& operand : operands) {
      Expect(operand, IsNullOrNumber, "A number made from a time is compared with a text",
             AdviceFor(all, "a number"));
    }
  } else if (kinds::Has(all, kinds::kWrittenTime | kinds::kOfDay)) {
    const auto texts = TextsBeside(operands, kinds::Has(all, kinds::kPart), how);
    const auto fits = [texts](const Value& vtValue) {
      if (vtValue.IsNull()) return true;
      const bool bText = vtValue.As<Text>() != nullptr || vtValue.As<platform::Date>() != nullptr ||
                         vtValue.As<platform::TimeOfDay>() != nullptr ||
                         vtValue.As<platform::WallTime>() != nullptr;
      return bText && texts(platform::ToText(vtValue));
    };
    for (const auto& operand : operands) {
      Expect(operand, fits, "A written time is compared with something else",
             AdviceFor(all, "a text of the same format"));
    }
  }
}

}  // namespace orvane::provider::dialect
