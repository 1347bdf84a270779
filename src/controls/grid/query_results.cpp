#include "controls/grid/query_results.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/case_folding.h"
#include "platform/quoting.h"

namespace orvane::controls {

using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;

QueryResults::QueryResults(GridServices services)
    : GridControl(std::move(services), "Query results"),
      m_time(m_core, {{},
                      [this] { Execute(); },
                      [this] { return Sent(); },
                      [this] {
                        return !m_core.Editing().IsTyping() &&
                               m_core.Editing().Session().PendingCount() == 0;
                      },
                      [this] { return m_sSqlText; }}),
      m_order(m_core, {[this](const ServerOrder::Criteria& order) { return TakesOrder(order); },
                       [this](const std::vector<SortColumn>& columns) { Fetch(&columns); },
                       [this] { return m_core.Editing().Session().Updatability().bUpdate; }}) {
  m_core.OnReconnected([this] { Execute(); });
}

void QueryResults::QueryName(const Text& sName) {
  m_sName = sName;
  m_core.Query(sName);
  m_core.Subject({sName, platform::QuotedName(sName.empty() ? Text("Rows") : sName)});
  m_core.Window().setAccessibleName(sName.empty() ? QStringLiteral("Query results")
                                                  : QStringLiteral("Results of ") +
                                                        QString::fromStdString(sName));
}

void QueryResults::SqlText(const Text& sSqlText) {
  // A range and an order stand around a text that has run by itself, and around no other.
  if (sSqlText != m_sSqlText) {
    m_time.Forget();
    m_order.Forget();
    m_sWhyNotEdited.clear();
  }
  m_sSqlText = sSqlText;
}

Text QueryResults::Statement(const ServerOrder::Criteria& order) const {
  Viewing viewing = m_time.View();
  viewing.order = order;
  return StatementWithin(m_sSqlText, viewing);
}

bool QueryResults::TakesOrder(const ServerOrder::Criteria& order) {
  if (order.empty()) return true;
  const platform::Recordset& rs = *m_core.Recordset();
  std::set<Text> names;
  for (platform::ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (!names.insert(platform::FoldCase(rs.FieldAt(column).Name())).second) return false;
  }
  try {
    // Whether it can be read at all; nothing is run.
    m_core.Ask("EXPLAIN " + Statement(order), 1, m_lQueryTimeout);
  } catch (const Failure& failure) {
    // Of anything else the rows will tell.
    return failure.Number() != platform::failure::kSqlError;
  }
  return true;
}

void QueryResults::Execute() {
  Fetch(nullptr);
}

void QueryResults::Fetch(const std::vector<SortColumn>* sorted) {
  if (m_sSqlText.find_first_not_of(" \t\r\n") == Text::npos) {
    m_core.Fail(Failure(platform::failure::kInvalidArgument,
                        "The query has no SQL statement; edit the query and write one."));
  }
  const std::weak_ptr<int> life = m_life;
  GridQuery query = Sent();
  if (sorted) query.sorted = *sorted;
  m_core.Run(query);
  if (life.expired()) return;
  // What stands around them says nothing of the rows themselves.
  if (WhyAround().empty()) LearnWhyNotEdited();
  m_time.RowsShown();
  m_order.RowsFetched();
}

GridQuery QueryResults::Sent() const {
  GridQuery query{Statement(m_order.Now()), m_lMaxRows, m_lQueryTimeout, TextsWithoutRows()};
  query.sWhyNotEdited = WhyAround();
  // Without it they could not be edited either.
  if (!query.sWhyNotEdited.empty() && !m_sWhyNotEdited.empty()) {
    query.sWhyNotEdited = m_sWhyNotEdited;
  }
  return query;
}

Text QueryResults::WhyAround() const {
  const Viewing& viewing = m_time.View();
  const bool bRange = viewing.timeColumn && viewing.range;
  const bool bOrder = !m_order.Now().empty();
  if (bRange && bOrder) {
    return "These rows can only be looked at: the order and the range of time stand around the "
           "query; take both away to edit them.";
  }
  if (bRange) {
    return "These rows can only be looked at: the range of time stands around the query; clear it "
           "to edit them.";
  }
  if (!bOrder) return {};
  return "These rows can only be looked at: the order stands around the query; take it away to "
         "edit them.";
}

void QueryResults::LearnWhyNotEdited() {
  const platform::ConnectionPtr cn = m_core.Connection();
  if (!cn || !cn->IsOpen()) return;  // that is another reason, and soon none
  const controls::Updatability& can = m_core.Editing().Session().Updatability();
  const Text sWhyNot = can.sWhyNot.toStdString();
  if (sWhyNot != WhyAround()) m_sWhyNotEdited = can.bUpdate ? Text() : sWhyNot;
}

RecordsetPtr QueryResults::Recordset() const {
  const RecordsetPtr& rs = m_core.Recordset();
  if (!rs) return rs;
  RowsState state = m_core.State();
  m_time.Keep(state);
  state.viewing.order = m_order.Now();
  m_core.States().Keep(*rs, std::move(state));
  return rs;
}

void QueryResults::Recordset(const RecordsetPtr& rs) {
  if (!rs) return m_core.Empty();
  const RowsState* found = m_core.States().Find(*rs);
  // Whoever hears of the rows may keep other states meanwhile, or drop the grid.
  const auto state = found ? std::optional(*found) : std::nullopt;
  const std::weak_ptr<int> life = m_life;
  if (!state) m_order.Forget();
  m_core.Attach(rs, state ? &*state : nullptr, m_sSqlText, TextsWithoutRows(), std::nullopt);
  if (life.expired()) return;
  m_time.Restore(state ? &*state : nullptr);
  m_order.Now(state ? state->viewing.order : ServerOrder::Criteria());
  LearnWhyNotEdited();
}

NoRowsTexts QueryResults::TextsWithoutRows() const {
  const QString sWhere =
      m_time.View().range ? QStringLiteral(" in the range of time that is set") : QString();
  if (m_sName.empty()) {
    return {"No rows", QStringLiteral("The query found nothing%1.").arg(sWhere)};
  }
  return {"No rows", QStringLiteral("The query \"%1\" found nothing%2.")
                         .arg(QString::fromStdString(m_sName), sWhere)};
}

}  // namespace orvane::controls
