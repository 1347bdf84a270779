#include "provider/dialect/statement_edits.h"

#include <algorithm>
#include <set>

namespace orvane::provider::dialect {

using platform::Text;
using platform::Value;

void StatementEdits::Replace(TokenRange range, Text sText) {
  m_replaced[Begin(range)] = {End(range), std::move(sText), false, {}};
}

void StatementEdits::Bind(TokenRange range, Value vtValue) {
  m_replaced[Begin(range)] = {End(range), "?", true, std::move(vtValue)};
}

void StatementEdits::Wrap(TokenRange range, const Text& sBefore, const Text& sBehind) {
  m_before[Begin(range)].emplace(End(range), sBefore);
  m_behind[End(range)].emplace(Begin(range), sBehind);
}

void StatementEdits::WrapAround(TokenRange range, const Text& sBefore, const Text& sBehind) {
  auto& before = m_before[Begin(range)];
  before.emplace_hint(before.lower_bound(End(range)), End(range), sBefore);
  m_behind[End(range)].emplace(Begin(range), sBehind);
}

bool StatementEdits::Touches(TokenRange range) const {
  return Lies(range, m_replaced) || Lies(range, m_before);
}

Text StatementEdits::TextOf(TokenRange range) const {
  return Text(m_sStatement.substr(Begin(range), End(range) - Begin(range)));
}

Text StatementEdits::Write(std::vector<Value>& parameters) const {
  std::vector<std::pair<std::size_t, std::size_t>> pieces;
  return Write(parameters, pieces);
}

Text StatementEdits::Write(std::vector<Value>& parameters,
                           std::vector<std::pair<std::size_t, std::size_t>>& pieces) const {
  std::set<std::size_t> places;
  for (const auto& [place, edit] : m_replaced) places.insert(place);
  for (const auto& [place, edit] : m_before) places.insert(place);
  for (const auto& [place, edit] : m_behind) places.insert(place);
  Text sSql;
  std::size_t position = 0;
  for (const std::size_t place : places) {
    // Within what was replaced as a whole.
    if (place < position) continue;
    if (place > position) {
      pieces.emplace_back(sSql.size(), position);
      sSql += m_sStatement.substr(position, place - position);
      position = place;
    }
    pieces.emplace_back(sSql.size(), place);
    // What ends here ends before anything else begins; the innermost first.
    if (const auto behind = m_behind.find(place); behind != m_behind.end()) {
      for (const auto& [begin, sText] : behind->second) sSql += sText;
    }
    if (const auto before = m_before.find(place); before != m_before.end()) {
      for (const auto& [end, sText] : before->second) sSql += sText;
    }
    if (const auto replaced = m_replaced.find(place); replaced != m_replaced.end()) {
      sSql += replaced->second.sText;
      if (replaced->second.bParameter) parameters.push_back(replaced->second.vtValue);
      position = std::max(position, replaced->second.end);
    }
  }
  pieces.emplace_back(sSql.size(), position);
  sSql += m_sStatement.substr(position);
  return sSql;
}

}  // namespace orvane::provider::dialect
