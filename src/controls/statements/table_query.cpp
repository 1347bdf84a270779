#include "controls/statements/table_query.h"

#include <QByteArray>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <unordered_set>
#include <utility>
#include <vector>

#include "controls/statements/sql_text.h"
#include "platform/failure.h"
#include "platform/json_text.h"
#include "platform/utf8.h"

namespace orvane::controls {

using nlohmann::json;
using platform::Failure;
using platform::Long;
using platform::Text;

namespace {

constexpr int kStateVersion = 2;
/// Without a range of time in the filter: what programs that do not know of it read, too.
constexpr int kPlainVersion = 1;
constexpr const char* kBytesMember = "bytes";

[[noreturn]] void FailNoState(const Text& sWhy) {
  throw Failure(
      platform::failure::kTypeMismatch,
      "The saved table query cannot be read: " + sWhy +
          ". Remove its line from the document in an editor, or restore the document from a "
          "copy.");
}

/// A name in an old encoding, out of a database, is no UTF-8 text and so no JSON string either; its
/// bytes are kept as they are.
void AppendText(Text& sState, const Text& sText) {
  if (platform::IsUtf8(sText)) {
    platform::AppendJsonString(sState, sText);
    return;
  }
  const auto bytes = QByteArray::fromRawData(sText.data(), static_cast<qsizetype>(sText.size()));
  sState.append("{\"").append(kBytesMember).append("\":\"");
  sState.append(bytes.toBase64().toStdString()).append("\"}");
}

/// The members of a state, each checked and counted. Every member must be there, once, and none
/// beside them: a state is written by this class alone, so anything else means damage.
class StateReader {
 public:
  /// The count goes on over all objects of one state.
  StateReader(const json& object, std::size_t& nRead) : m_object(object), m_nRead(nRead) {}

  const json& Member(const char* sName) const {
    const auto found = m_object.find(sName);
    if (found == m_object.end()) FailNoState(Text("\"") + sName + "\" is missing");
    ++m_nRead;
    return *found;
  }
  Text TextMember(const char* sName) const {
    return TextOf(Member(sName), Text("\"") + sName + "\"");
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
  std::vector<Text> TextsMember(const char* sName) const {
    const json& list = Member(sName);
    if (!list.is_array()) FailNoState(Text("\"") + sName + "\" is no list");
    std::vector<Text> texts;
    for (const json& text : list) texts.push_back(TextOf(text, "a column's name"));
    return texts;
  }
  /// The members of an object that is a member.
  StateReader Within(const json& object) const { return {object, m_nRead}; }

 private:
  Text TextOf(const json& text, const Text& sWhat) const {
    if (text.is_string()) return text.get<Text>();
    if (!text.is_object()) FailNoState(sWhat + " is no text");
    const json& bytes = Within(text).Member(kBytesMember);
    if (!bytes.is_string()) FailNoState(sWhat + " is no text");
    const auto decoded =
        QByteArray::fromBase64Encoding(QByteArray::fromStdString(bytes.get_ref<const Text&>()),
                                       QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) FailNoState(sWhat + " is not in base64");
    return decoded.decoded.toStdString();
  }

  const json& m_object;
  std::size_t& m_nRead;
};

/// The state as an object, and the number of members written in it.
json ParseState(const Text& sState, std::size_t& nWritten) {
  // A repeated member would silently win over the first one, so members are counted as written.
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
  return state;
}

Long ReadVersion(const StateReader& reader) {
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
  if (lVersion < kPlainVersion) FailNoState("there never was a format of that number");
  return lVersion;
}

std::optional<platform::SortCriterion> ReadSortCriterion(const StateReader& reader) {
  const json& sort = reader.Member("sort");
  if (sort.is_null()) return std::nullopt;
  if (!sort.is_object()) FailNoState("\"sort\" is no sort criterion");
  const StateReader members = reader.Within(sort);
  return platform::SortCriterion{members.TextMember("column"), members.BooleanMember("ascending")};
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
  if (sFilterCondition != m_state.sFilterCondition) m_state.sTimeFilter.clear();
  m_state.sFilterCondition = sFilterCondition;
  m_change.Raise();
}

void TableQuery::TimeFilter(const Text& sTimeFilter) {
  m_bFilterIsDefault = false;
  m_state.sTimeFilter = sTimeFilter;
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
  std::vector<platform::SortCriterion> sort;
  if (m_state.sortCriterion) sort.push_back(*m_state.sortCriterion);
  return ComposeSelect(
      {m_state.sCatalog, m_state.sTable, m_columns.Names(), m_state.sFilterCondition, sort});
}

platform::Subscription TableQuery::OnChange(std::function<void()> handler) {
  return m_change.Connect(std::move(handler));
}

Text TableQuery::WriteState() const {
  Text sState;
  sState.reserve(256);
  sState += "{\"catalog\":";
  AppendText(sState, m_state.sCatalog);
  sState.append(",\"class\":\"").append(platform::kTableQueryProgId).append("\",\"columns\":[");
  const char* sComma = "";
  for (const Text& sColumn : m_columns.Names()) {
    sState += std::exchange(sComma, ",");
    AppendText(sState, sColumn);
  }
  sState += "],\"filterCondition\":";
  AppendText(sState, m_state.sFilterCondition);
  sState.append(",\"maxRows\":").append(std::to_string(m_state.lMaxRows));
  sState.append(",\"queryTimeout\":").append(std::to_string(m_state.lQueryTimeout));
  sState += ",\"sort\":";
  if (m_state.sortCriterion) {
    sState += m_state.sortCriterion->bAscending ? "{\"ascending\":true,\"column\":"
                                                : "{\"ascending\":false,\"column\":";
    AppendText(sState, m_state.sortCriterion->sColumn);
    sState += '}';
  } else {
    sState += "null";
  }
  sState += ",\"table\":";
  AppendText(sState, m_state.sTable);
  const bool bPlain = m_state.sTimeFilter.empty();
  if (!bPlain) {
    sState += ",\"timeFilter\":";
    AppendText(sState, m_state.sTimeFilter);
  }
  sState.append(",\"version\":").append(std::to_string(bPlain ? kPlainVersion : kStateVersion));
  sState += '}';
  return sState;
}

void TableQuery::ReadState(const Text& sState) {
  std::size_t nWritten = 0;
  std::size_t nRead = 0;
  const json object = ParseState(sState, nWritten);
  const StateReader reader(object, nRead);
  const Long lVersion = ReadVersion(reader);
  State state;
  state.sCatalog = reader.TextMember("catalog");
  state.sTable = reader.TextMember("table");
  state.sFilterCondition = reader.TextMember("filterCondition");
  if (lVersion > kPlainVersion) state.sTimeFilter = reader.TextMember("timeFilter");
  state.sortCriterion = ReadSortCriterion(reader);
  state.lMaxRows = reader.LongMember("maxRows");
  state.lQueryTimeout = reader.LongMember("queryTimeout");
  std::vector<Text> columns = reader.TextsMember("columns");
  if (std::unordered_set<Text>(columns.begin(), columns.end()).size() != columns.size()) {
    FailNoState("it selects a column twice");
  }
  if (nRead != nWritten) FailNoState("it has members that do not belong to it");

  m_state = std::move(state);
  m_columns.Restore(std::move(columns));
}

}  // namespace orvane::controls
