#include "controls/query_results.h"

#include <algorithm>
#include <utility>

#include "platform/quoting.h"

namespace orvane::controls {

using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;

QueryResults::QueryResults(GridServices services)
    : GridControl(std::move(services), "Query results") {
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

void QueryResults::Execute() {
  if (m_sSqlText.find_first_not_of(" \t\r\n") == Text::npos) {
    m_core.Fail(Failure(platform::failure::kInvalidArgument,
                        "The query has no SQL statement; edit the query and write one."));
  }
  m_core.Run({m_sSqlText, m_lMaxRows, m_lQueryTimeout, TextsWithoutRows()});
}

RecordsetPtr QueryResults::Recordset() const {
  const RecordsetPtr& rs = m_core.Recordset();
  if (rs) m_core.States().Keep(*rs, m_core.State());
  return rs;
}

void QueryResults::Recordset(const RecordsetPtr& rs) {
  if (!rs) return m_core.Empty();
  m_core.Attach(rs, m_core.States().Find(*rs), m_sSqlText, TextsWithoutRows(), std::nullopt);
}

NoRowsTexts QueryResults::TextsWithoutRows() const {
  if (m_sName.empty()) return {"No rows", "The query found nothing."};
  return {"No rows",
          QStringLiteral("The query \"%1\" found nothing.").arg(QString::fromStdString(m_sName))};
}

}  // namespace orvane::controls
