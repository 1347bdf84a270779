#include "provider/dialect/stored_numbers.h"

#include <algorithm>
#include <cstdlib>

#include "platform/exact_number.h"
#include "platform/failure.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Value;

namespace {

constexpr std::string_view kStoredNumber = "orvane_stored_number";
// So many digits the engine keeps by itself, and a text stays one where the column takes texts.
constexpr std::size_t kAlwaysKept = 15;

[[noreturn]] void FailTooLong(const Text& sNumber, std::string_view sStatement) {
  throw platform::Failure(platform::failure::kOverflow,
                          ShownText(sNumber) +
                              " has more digits than a column of numbers keeps; enter fewer (15 "
                              "always fit), or keep it in a column of type TEXT.",
                          "ORVOLEDB", 0, Text(sStatement));
}

// What the engine takes for a number may have blanks around it.
Value StoredNumber(const Value& vtValue) {
  constexpr std::string_view kBlanks = " \t\n\v\f\r";
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr) return vtValue;
  const std::size_t first = sText->find_first_not_of(kBlanks);
  if (first == Text::npos) return vtValue;
  const auto sNumber =
      std::string_view(*sText).substr(first, sText->find_last_not_of(kBlanks) + 1 - first);
  const auto digits = platform::ReadDigits(sNumber);
  if (!digits || (digits->sDigits.size() <= kAlwaysKept && std::abs(digits->exponent) < 300)) {
    return vtValue;
  }
  auto exact = platform::ExactNumber(sNumber);
  if (!exact) FailTooLong(Text(sNumber), {});
  return *std::move(exact);
}

}  // namespace

void StoredNumbers::Look() {
  if (m_tree.kind != StatementKind::Change || m_tree.targetSource == nullptr) return;
  const FoundTable* const found = m_names.TableOf(*m_tree.targetSource);
  if (found == nullptr) return;
  if (m_tree.bInsert) LookAtInsert(*found);
  for (const auto& assignment : m_tree.assignments) {
    const Expr* value = assignment.value;
    while (value->kind == ExprKind::Bracket) value = value->children[0];
    const bool bRow = value->kind == ExprKind::Row;
    for (std::size_t i = 0; i < assignment.columns.size(); ++i) {
      if (!Rounds(*found, m_tree.tokens[assignment.columns[i]].sText)) continue;
      if (!bRow && assignment.columns.size() == 1) LookAtValue(*value);
      if (bRow && i < value->children.size()) LookAtValue(*value->children[i]);
    }
  }
}

void StoredNumbers::LookAtInsert(const FoundTable& found) {
  if (m_tree.mainQuery == nullptr) return;
  std::vector<bool> rounds;  // by place among the values
  if (m_tree.targetColumns.empty()) {
    for (const auto& column : found.table.columns) {
      if (!column.bGenerated) rounds.push_back(column.bRounds);
    }
  } else {
    for (const std::size_t token : m_tree.targetColumns) {
      rounds.push_back(Rounds(found, m_tree.tokens[token].sText));
    }
  }
  for (const Scope* const core : m_tree.mainQuery->cores) {
    for (const auto& row : core->rows) {
      for (std::size_t i = 0; i < std::min(row.size(), rounds.size()); ++i) {
        if (rounds[i]) LookAtValue(*row[i]);
      }
    }
    // Behind a star nobody has counted the columns here.
    for (std::size_t i = 0; i < std::min(core->items.size(), rounds.size()); ++i) {
      if (core->items[i].expr == nullptr) break;
      if (rounds[i]) LookAtValue(*core->items[i].expr);
    }
  }
}

bool StoredNumbers::Rounds(const FoundTable& found, const Text& sColumn) const {
  const auto named = [&](const KnownColumn& column) { return SameName(column.sName, sColumn); };
  const auto column = std::ranges::find_if(found.table.columns, named);
  if (column != found.table.columns.end()) return column->bRounds;
  const Text sPlain = m_names.Plain(sColumn);
  return sPlain != sColumn && Rounds(found, sPlain);
}

// What a calculation gives, or another column holds, is the engine's own.
void StoredNumbers::LookAtValue(const Expr& value) {
  const Expr* inside = &value;
  Text sSign;
  while (inside->kind == ExprKind::Bracket || inside->kind == ExprKind::Sign) {
    const bool bMinus =
        inside->kind == ExprKind::Sign && m_tree.tokens[inside->operation].IsSymbol("-");
    if (bMinus) sSign = sSign.empty() ? "-" : "";
    inside = inside->children[0];
  }
  const Token& token = m_tree.tokens[inside->range.begin];
  if (inside->kind == ExprKind::Number) {
    const Text sNumber = sSign + token.sText;
    // Beyond all doubles a number is how infinity is written.
    const auto digits = platform::ReadDigits(sNumber);
    if (digits && digits->sDigits.size() > kAlwaysKept && !platform::ExactNumber(sNumber)) {
      FailTooLong(sNumber, m_sStatement);
    }
    return;
  }
  const bool bParameter = token.nParameter != 0 && inside->kind != ExprKind::Time;
  if (inside->kind != ExprKind::String && !bParameter) return;
  m_edits.Wrap(value.range, Text(kStoredNumber) + "(", ")");
  m_bCalls = true;
}

engines::StatementFunction StoredNumbers::Function() {
  return {Text(kStoredNumber), StoredNumber};
}

}  // namespace orvane::provider::dialect
