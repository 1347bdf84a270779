// Times without a zone: which values are such, and when what meets one is read as clocks show it.
#include <algorithm>

#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

// Of a time without a zone nobody can tell which moment it is; what comes back by a parameter is
// what the clocks show.
bool TimeAnalysis::IsWithoutZone(const Operand& operand) {
  if (operand.expr != nullptr) return IsWithoutZone(*operand.expr);
  if (operand.query == nullptr) return false;
  const OutputColumns& columns = OutputOf(*operand.query);
  return operand.column < columns.size() && columns[operand.column].bWithoutZone;
}

bool TimeAnalysis::IsWithoutZone(const Expr& expr) {
  const Expr& inside = *Inside(&expr);
  switch (inside.kind) {
    case ExprKind::Name: {
      const Found found = Find(inside.chain, inside.scope);
      return found.column != nullptr && found.column->bWithoutZone;
    }
    case ExprKind::Subquery:
      return IsWithoutZone(Operand{nullptr, inside.query, nullptr, 0, 0});
    case ExprKind::Arithmetic:
    case ExprKind::Call: {
      // What is made of times is one of them, or one that is moved on.
      if (!kinds::Has(KindsOf(inside), kinds::kTimes)) return false;
      const auto isTime = [this](const Expr* child) {
        return kinds::Has(KindsOf(*child), kinds::kTimes);
      };
      return std::ranges::all_of(inside.children, [&](const Expr* child) {
        return !isTime(child) || IsWithoutZone(*child);
      });
    }
    default:
      return false;
  }
}

bool TimeAnalysis::IsGivenText(const Operand& operand) const {
  if (operand.expr == nullptr) return false;
  const Expr& inside = *Inside(operand.expr);
  return inside.kind == ExprKind::String && At(inside.range.begin).nParameter != 0;
}

bool TimeAnalysis::IsGivenText(const Query& query, std::size_t column) const {
  return std::ranges::all_of(query.cores, [&](const Scope* core) {
    return !core->rows.empty() && std::ranges::all_of(core->rows, [&](const auto& row) {
      return column < row.size() && IsGivenText(Operand{row[column], nullptr, nullptr, 0, 0});
    });
  });
}

bool TimeAnalysis::MeetsAsText(const std::vector<Operand>& operands) {
  return std::ranges::all_of(operands, [this](const Operand& operand) {
    return IsGivenText(operand) || IsWithoutZone(operand);
  });
}

// Where all that is a time already is one without a zone, what is written beside it is read by the
// clocks of the connection's zone, and stays what they show.
bool TimeAnalysis::MeetsClocks(const std::vector<Operand>& operands) {
  bool bClocks = false;
  for (const auto& operand : operands) {
    if (IsWithoutZone(operand)) {
      bClocks = true;
    } else if (kinds::Has(KindsOf(operand), kinds::kTimes)) {
      return false;
    }
  }
  return bClocks;
}

}  // namespace orvane::provider::dialect
