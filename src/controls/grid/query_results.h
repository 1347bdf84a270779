// The grid that shows the rows of a named query, behind the progid "ORVOLEDBCtls.QueryResults".
// The console makes a fresh one for each visit to a query. User-interface thread.
#pragma once

#include "controls/grid/grid_control.h"
#include "controls/grid/server_order.h"
#include "controls/grid/table_time.h"
#include "platform/grids/query_limits.h"

namespace orvane::controls {

class QueryResults : public GridControl<platform::QueryResults> {
 public:
  explicit QueryResults(GridServices services);

  platform::Text QueryName() const override { return m_sName; }
  void QueryName(const platform::Text& sName) override;
  platform::Text SqlText() const override { return m_sSqlText; }
  void SqlText(const platform::Text& sSqlText) override;
  platform::Long MaxRows() const override { return m_lMaxRows; }
  void MaxRows(platform::Long lMaxRows) override { m_lMaxRows = lMaxRows; }
  platform::Long QueryTimeout() const override { return m_lQueryTimeout; }
  void QueryTimeout(platform::Long lQueryTimeout) override { m_lQueryTimeout = lQueryTimeout; }
  void Execute() override;
  /// Reading the recordset also remembers how it is being looked at: whoever takes it is about to
  /// hide the grid, and a fresh one that is given it shows it the same way.
  platform::RecordsetPtr Recordset() const override;
  void Recordset(const platform::RecordsetPtr& rs) override;

 private:
  NoRowsTexts TextsWithoutRows() const;
  /// What is sent: the query's text, with the range of time and the order that are set around it.
  platform::Text Statement(const ServerOrder::Criteria& order) const;
  GridQuery Sent() const;
  /// What stands around the query, as the reason for which rows can only be looked at; empty where
  /// nothing does.
  platform::Text WhyAround() const;
  /// Keeps why the query's own rows can only be looked at: with something around it, nobody says.
  void LearnWhyNotEdited();
  /// Fetches the rows, or the same rows sorted anew.
  void Fetch(const std::vector<SortColumn>* sorted);
  /// True where each column has a name of its own and the server can read the query so.
  bool TakesOrder(const ServerOrder::Criteria& order);

  platform::Text m_sName;
  platform::Text m_sSqlText;
  platform::Text m_sWhyNotEdited;  ///< the query's own rows; empty where they can be
  platform::Long m_lMaxRows = platform::kUsualMaxRows;
  platform::Long m_lQueryTimeout = platform::kUsualQueryTimeout;
  TableTime m_time;
  ServerOrder m_order;
  std::shared_ptr<int> m_life = std::make_shared<int>();  ///< gone with the grid
};

}  // namespace orvane::controls
