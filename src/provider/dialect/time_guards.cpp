// What meets what was made from a time: numbers meet numbers, and written times meet texts. What is
// known only when the statement runs is looked at then, by functions that end it.
#include <algorithm>

#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;

// None of them is a time, but they may have been made from one.
void TimeAnalysis::CheckMeeting(const std::vector<Operand>& operands, std::size_t token,
                                Comparison how) {
  Kinds all = kinds::kNull;
  for (const auto& operand : operands) all |= KindsOf(operand);
  if (IsLeft(all)) return;
  ExpectMade(operands, all, how);
  if (kinds::Has(all, kinds::kCounts) && kinds::Has(all, kinds::kSureTexts)) {
    Fail(token, "A number made from a time is compared with a text", AdviceFor(all, "a number"));
  }
  if (kinds::Has(all, kinds::kNumberOfTime | kinds::kTextOfTime)) {
    const bool bNumbers =
        kinds::IsOnly(all, kinds::kOnlyNumbers) &&
        (!TimeAsDouble() ||
         kinds::IsOnly(all, kinds::kNumberOfTime | kinds::kCounts | kinds::kCount));
    if (!bNumbers && !kinds::IsOnly(all, kinds::kTextOfTime)) {
      Fail(token, "What was made from a time is compared with something else",
           "compare the time itself, as in Timestamp >= '*-1h'");
    }
  } else if (kinds::Has(all, kinds::kCounts)) {
    for (const auto& operand : operands) GuardNumber(operand);
  } else if (kinds::Has(all, kinds::kWrittenTime | kinds::kOfDay)) {
    CheckWritten(operands, token, how);
  }
}

// What was made from dates in a view or a table that is there already is compared as it stands,
// unless a number or a text that was made from a stored time is among it.
bool TimeAnalysis::IsLeft(Kinds kinds) const {
  return m_place.bStored && kinds::Has(kinds, kinds::kMadeOfDays) &&
         !kinds::Has(kinds, kinds::kFromTimes | kinds::kCountOfTime);
}

void TimeAnalysis::CheckLeft(Kinds kinds, std::size_t token) const {
  if (!kinds::Has(kinds, kinds::kFromTimes | kinds::kCountOfTime)) return;
  Fail(token, "What was made from a time is compared with something else",
       "compare the time itself, as in Timestamp >= '*-1h'");
}

// Of what compares a written time with what is none.
Text TimeAnalysis::AdviceFor(Kinds kinds, std::string_view sInstead) {
  return Text(kinds::Has(kinds, kinds::kMadeOfDays)
                  ? "compare the date or the time of day itself, as in Day >= 'y'"
                  : "compare the time itself, as in Timestamp >= '*-1h'") +
         ", or write " + Text(sInstead);
}

void TimeAnalysis::CheckWritten(const std::vector<Operand>& operands, std::size_t token,
                                Comparison how) {
  bool bPart = false;
  bool bWhole = false;
  Kinds all = kinds::kNull;
  for (const auto& operand : operands) {
    const Kinds kinds = KindsOf(operand);
    all |= kinds;
    if (how == Comparison::Order && kinds::Has(kinds, kinds::kUnsorted)) {
      Fail(token, "Texts of this format do not sort as their times do",
           "compare the time itself, as in Timestamp >= '*-1h', or write the year first");
    }
    if (kinds::Has(kinds, kinds::kPart)) {
      bPart = true;
    } else if (kinds::Has(kinds, kinds::kDates)) {
      bWhole = true;
    }
  }
  if (bPart && bWhole) {
    Fail(token, "A part of a time is compared with a whole one",
         "compare the time itself, as in Timestamp >= '*-1h', or write both in one format");
  }
  const auto shapes = how == Comparison::Order ? ShapesOf(operands) : std::vector<Text>();
  for (const Text& sShape : shapes) {
    if (HaveOneFormat(shapes.front(), sShape)) continue;
    Fail(token, "A written time is compared with something else",
         AdviceFor(all, "a text of the same format"));
  }
  for (const auto& operand : operands) {
    const Kinds kinds = KindsOf(operand);
    const Expr* const inside = operand.expr != nullptr ? Inside(operand.expr) : nullptr;
    if (kinds != kinds::kNull && kinds::IsOnly(kinds, kinds::kNumbers)) {
      Fail(inside != nullptr ? inside->range.begin : operand.token,
           "A written time is compared with something else",
           AdviceFor(all, "CAST(... AS INTEGER) for a number"));
    }
    if (inside != nullptr && inside->kind == ExprKind::String) {
      CheckLiteral(*inside, operands, bPart, how);
    } else {
      GuardText(operand, bPart);
      if (how == Comparison::Order) GuardFormat(operand, operands, bPart);
    }
  }
}

// A text of which nothing is known might be before or behind all that is written so.
void TimeAnalysis::GuardFormat(const Operand& operand, const std::vector<Operand>& operands,
                               bool bPart) {
  if (kinds::Has(KindsOf(operand), kinds::kDates) || !m_place.sKept.empty()) return;
  auto shapes = ShapesOf(operands);
  if (shapes.empty()) shapes.emplace_back(bPart ? kPartShape : kWholeShape);
  for (const Text& sShape : shapes) {
    const auto nNext = m_functionNames.size();
    const auto [named, bNew] = m_functionNames.try_emplace(sShape);
    if (bNew) named->second = Text(kOnlyWritten) + "_" + std::to_string(nNext);
    Guard(operand, named->second, kinds::kDates);
  }
}

// A text that no written time can be is before or behind all of them.
TimeAnalysis::FitsText TimeAnalysis::TextsBeside(const std::vector<Operand>& operands, bool bPart,
                                                 Comparison how) {
  const bool bOrder = how == Comparison::Order;
  auto shapes = ShapesOf(operands);
  if (shapes.empty() && bOrder) shapes.emplace_back(bPart ? kPartShape : kWholeShape);
  return [shapes = std::move(shapes), bPart, bOrder](std::string_view sText) {
    if (sText.empty()) return true;
    if (shapes.empty()) return BeginsAsWritten(sText) && !(bPart && BeginsAsDate(sText));
    return std::ranges::all_of(shapes, [&](const Text& sShape) {
      return bOrder ? CanBegin(sShape, sText) : CanBe(sShape, sText);
    });
  };
}

void TimeAnalysis::CheckLiteral(const Expr& text, const std::vector<Operand>& operands, bool bPart,
                                Comparison how) {
  if (TextsBeside(operands, bPart, how)(At(text.range.begin).sText)) return;
  Kinds all = kinds::kNull;
  for (const auto& operand : operands) all |= KindsOf(operand);
  Fail(text.range.begin, "A written time is compared with something else",
       AdviceFor(all, "a text of the same format"));
}

// The engine counts a text as the number that it begins with, most often as 0.
void TimeAnalysis::LookAtCounted(const Expr& sum, const Expr& side, Kinds other) {
  if (!kinds::Has(other, kinds::kTimes | kinds::kNumberOfTime | kinds::kCounts)) return;
  if (IsLeft(other)) return;
  const Kinds of = KindsOf(side);
  const bool bStored = kinds::Has(other, kinds::kTimes);
  const Text sWhat = "A time and a text are added";
  const Text sAdvice =
      "compare two times, as in Timestamp >= '*-1h', or write CAST(... AS REAL) for a number and "
      "CAST(... AS TIMESTAMP) for a time";
  if (kinds::Has(of, kinds::kText) || (bStored && kinds::Has(of, kinds::kDates))) {
    Fail(sum.operation, sWhat, sAdvice);
  }
  const auto fits = [bStored](const platform::Value& vtValue) {
    return IsNullOrNumber(vtValue) || (bStored && IsNullOrTime(vtValue));
  };
  Expect({&side, nullptr, nullptr, 0, 0}, fits, sWhat, sAdvice);
  if (kinds::Has(of, kinds::kAny) && m_place.sKept.empty()) {
    Guard(side, kOnlyCount, kinds::kOnlyNumbers);
  }
}

void TimeAnalysis::GuardNumber(const Operand& operand) {
  Guard(operand, kOnlyNumber, kinds::kOnlyNumbers);
}

void TimeAnalysis::GuardText(const Operand& operand, bool bPart) {
  // A text that was made from a date, as a CAST makes it, is one.
  if (kinds::Has(KindsOf(operand), kinds::kOfDay) &&
      kinds::IsOnly(KindsOf(operand), kinds::kOnlyTexts)) {
    return;
  }
  if (bPart) {
    Guard(operand, kOnlyPart, kinds::kDates);
  } else {
    Guard(operand, kOnlyText, kinds::kOnlyTexts);
  }
}

void TimeAnalysis::Guard(const Operand& operand, std::string_view sFunction, Kinds sound) {
  if (kinds::IsOnly(KindsOf(operand), sound) || Typed() != nullptr) return;
  if (operand.expr != nullptr) {
    Guard(*operand.expr, sFunction, sound);
  } else if (operand.query != nullptr) {
    GuardOutput(*operand.query, operand.column, sFunction, sound);
  } else {
    Fail(operand.token, "The column of a table meets a time",
         "write (SELECT column FROM table) in place of the table");
  }
}

void TimeAnalysis::Guard(const Expr& expr, std::string_view sFunction, Kinds sound) {
  if (kinds::IsOnly(KindsOf(expr), sound) || Typed() != nullptr) return;
  if (!m_guarded.emplace(expr.nNumber, sFunction).second) return;
  if (!m_place.sKept.empty()) {
    if (IsLeft(KindsOf(expr))) return;
    // What is kept can call no function.
    Fail(expr.range.begin, "What may be a text or a number meets a time in " + m_place.sKept,
         "write CAST(... AS REAL) for a number, CAST(... AS TEXT) for a text");
  }
  m_place.edits.Wrap(expr.range, Text(sFunction) + "(", ")");
  m_bCalls = true;
}

void TimeAnalysis::GuardOutput(const Query& query, std::size_t column, std::string_view sFunction,
                               Kinds sound) {
  if (!m_outputs.contains(&query)) OutputOf(query);
  const Output& output = m_outputs[&query];
  for (std::size_t i = 0; i < query.cores.size() && i < output.cores.size(); ++i) {
    const Scope& core = *query.cores[i];
    for (const auto& row : core.rows) {
      if (column < row.size()) Guard(*row[column], sFunction, sound);
    }
    if (!core.rows.empty() || column >= output.cores[i].size()) continue;
    const OutputColumn& out = output.cores[i][column];
    const Item& item = core.items[out.item];
    if (item.expr != nullptr) {
      Guard(*item.expr, sFunction, sound);
    } else if (!kinds::IsOnly(out.kinds, sound)) {
      Fail(item.range.begin, "A star stands for what may be a text or a number and meets a time",
           "name the columns");
    }
  }
}

}  // namespace orvane::provider::dialect
