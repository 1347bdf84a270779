#include "controls/table_query.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <utility>
#include <vector>

#include "controls/sql_text.h"
#include "platform/failure.h"

namespace orvane::controls {

using nlohmann::json;
using platform::Failure;
using platform::Long;
using platform::Text;

namespace {

constexpr int kStateVersion = 1;
constexpr std::size_t kStateMembers = 9;
constexpr std::size_t kSortMembers = 2;

[[noreturn]] void FailNoState(const Text& sWhy) {
  throw Failure(platform::failure::kTypeMismatch,
                "The saved table query cannot be read: " + sWhy +
                    ". Remove it from the document, or choose the table's query anew.");
}

/// The members of a state, each checked. Every member must be there, once, and none beside them:
/// a state is written by this class alone, so anything else means damage.
class StateReader {
 public:
  explicit StateReader(const json& object) : m_object(object) {}

  const json& Member(const char* sName) const {
    const auto found = m_object.find(sName);
    if (found == m_object.end()) FailNoState(Text("\"") + sName + "\" is missing");
    return *found;
  }
  Text TextMember(const char* sName) const {
    const json& member = Member(sName);
    if (!member.is_string()) FailNoState(Text("\"") + sName + "\" is no text");
    return member.get<Text>();
  }
  bool BooleanMember(const char* sName) const {
    const json& member = Member(sName);
    if (!member.is_boolean()) FailNoState(Text("\"") + sName + "\" is neither true nor false");
    return member.get<bool>();
  }
  Long LongMember(const char* sName) const {
    const json& member = Member(sName);
    // Numbers are kept as unsigned ones unless they have a sign, and the two kinds do not compare.
    const bool bFits =
        member.is_number_unsigned()
            ? std::in_range<Long>(member.get<std::uint64_t>())
            : member.is_number_integer() && std::in_range<Long>(member.get<std::int64_t>());
    if (!bFits) FailNoState(Text("\"") + sName + "\" is no 32-bit integer");
    return member.get<Long>();
  }

 private:
  const json& m_object;
};

json ParseState(const Text& sState) {
  // A repeated member would silently win over the first one, so members are counted as written.
  std::size_t nWritten = 0;
  const auto count = [&nWritten](int, json::parse_event_t event, json&) {
    if (event == json::parse_event_t::key) ++nWritten;
    return true;
  };
  json state;
  try {
    state = json::parse(sState, count);
  } catch (const json::exception&) {
    FailNoState("it is damaged");
  }
  if (!state.is_object()) FailNoState("it is something else");

  const StateReader reader(state);
  if (reader.TextMember("class") != platform::kTableQueryProgId) {
    FailNoState("it is something else");
  }
  const Long lVersion = reader.LongMember("version");
  if (lVersion > kStateVersion) {
    throw Failure(platform::failure::kTypeMismatch,
                  "The saved table query was written by a newer version of the grid library "
                  "(format " +
                      std::to_string(lVersion) + "; this one reads format " +
                      std::to_string(kStateVersion) + "). Update the program to open it.");
  }
  if (lVersion != kStateVersion) FailNoState("there never was a format of that number");
  const json& sort = reader.Member("sort");
  const std::size_t nExpected = kStateMembers + (sort.is_object() ? kSortMembers : 0);
  if (nWritten != nExpected || state.size() != kStateMembers) {
    FailNoState("it has members that do not belong to it");
  }
  return state;
}

std::optional<platform::SortCriterion> ReadSortCriterion(const json& sort) {
  if (sort.is_null()) return std::nullopt;
  if (!sort.is_object()) FailNoState("\"sort\" is no sort criterion");
  const StateReader reader(sort);
  return platform::SortCriterion{reader.TextMember("column"), reader.BooleanMember("ascending")};
}

std::vector<Text> ReadColumns(const json& columns) {
  if (!columns.is_array()) FailNoState("\"columns\" is no list");
  std::vector<Text> names;
  std::unordered_set<Text> known;
  for (const json& column : columns) {
    if (!column.is_string()) FailNoState("a column's name is no text");
    names.push_back(column.get<Text>());
    if (!known.insert(names.back()).second) FailNoState("it selects a column twice");
  }
  return names;
}

}  // namespace

TableQuery::TableQuery(std::shared_ptr<void> life)
    : m_life(std::move(life)), m_columns([this] { m_change.Raise(); }) {}

// No setter compares: setting an equal value is a change like any other.

void TableQuery::Catalog(const Text& sCatalog) {
  m_state.sCatalog = sCatalog;
  m_change.Raise();
}

void TableQuery::Table(const Text& sTable) {
  m_state.sTable = sTable;
  m_change.Raise();
}

void TableQuery::FilterCondition(const Text& sFilterCondition) {
  m_state.sFilterCondition = sFilterCondition;
  m_change.Raise();
}

void TableQuery::SortCriterion(const std::optional<platform::SortCriterion>& criterion) {
  m_state.sortCriterion = criterion;
  m_change.Raise();
}

void TableQuery::MaxRows(Long lMaxRows) {
  m_state.lMaxRows = lMaxRows;
  m_change.Raise();
}

void TableQuery::QueryTimeout(Long lQueryTimeout) {
  m_state.lQueryTimeout = lQueryTimeout;
  m_change.Raise();
}

Text TableQuery::SqlText() const {
  return ComposeSelect({m_state.sCatalog, m_state.sTable, m_columns.Names(),
                        m_state.sFilterCondition, m_state.sortCriterion});
}

platform::Subscription TableQuery::OnChange(std::function<void()> handler) {
  return m_change.Connect(std::move(handler));
}

Text TableQuery::WriteState() const {
  json sort;
  if (m_state.sortCriterion) {
    sort = {{"column", m_state.sortCriterion->sColumn},
            {"ascending", m_state.sortCriterion->bAscending}};
  }
  const json state = {
      {"class", platform::kTableQueryProgId},
      {"version", kStateVersion},
      {"catalog", m_state.sCatalog},
      {"table", m_state.sTable},
      {"columns", m_columns.Names()},
      {"filterCondition", m_state.sFilterCondition},
      {"sort", sort},
      {"maxRows", m_state.lMaxRows},
      {"queryTimeout", m_state.lQueryTimeout},
  };
  try {
    return state.dump();
  } catch (const json::type_error&) {
    throw Failure(platform::failure::kTypeMismatch,
                  "The query of the table \"" + m_state.sTable +
                      "\" cannot be saved: one of its texts is not valid UTF-8. Choose the "
                      "table's query anew.");
  }
}

void TableQuery::ReadState(const Text& sState) {
  const json object = ParseState(sState);
  const StateReader reader(object);
  State state;
  state.sCatalog = reader.TextMember("catalog");
  state.sTable = reader.TextMember("table");
  state.sFilterCondition = reader.TextMember("filterCondition");
  state.sortCriterion = ReadSortCriterion(reader.Member("sort"));
  state.lMaxRows = reader.LongMember("maxRows");
  state.lQueryTimeout = reader.LongMember("queryTimeout");
  std::vector<Text> columns = ReadColumns(reader.Member("columns"));

  m_state = std::move(state);
  m_columns.Restore(std::move(columns));
}

}  // namespace orvane::controls
