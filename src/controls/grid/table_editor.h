// The grid that shows a table's rows, behind the progid "ORVOLEDBCtls.TableEditor".
// The console makes a fresh one for each visit to a table. User-interface thread.
#pragma once

#include "controls/grid/grid_control.h"
#include "controls/grid/grid_import.h"
#include "controls/grid/row_count.h"
#include "controls/grid/server_order.h"
#include "controls/grid/table_time.h"

namespace orvane::controls {

class TableEditor : public GridControl<platform::TableEditor> {
 public:
  explicit TableEditor(GridServices services);

  void TableQuery(const platform::TableQueryPtr& query) override;
  void Requery() override;
  /// lUpdatability is the number of the state in which DetachRecordset saw these very rows: current
  /// cell, selection, scroll position, column widths and SQL text come back. Any other number, and
  /// 0, shows the rows from the first on.
  void AttachRecordset(const platform::RecordsetPtr& rs, platform::Long lUpdatability) override;
  platform::RecordsetPtr DetachRecordset(platform::Long& lUpdatability) override;
  /// By the current column, in front of no other. Where the row limit cut the rows, the server
  /// sorts all of them; the table's query stays as it is.
  void SortAscending() override { SortByCurrent(true); }
  void SortDescending() override { SortByCurrent(false); }
  platform::Boolean CanSort() const override;
  platform::Boolean CanImport() const override { return m_import.CanRun(); }
  void Import() override { m_import.Run(); }
  [[nodiscard]] platform::Subscription OnHeadClick(std::function<void()> handler) override;
  [[nodiscard]] platform::Subscription OnFilterKept(std::function<void()> handler) override;

 private:
  using Criterion = std::optional<platform::SortCriterion>;

  NoRowsTexts TextsWithoutRows() const;
  /// What Requery sends; there is a query with a table.
  GridQuery Sent() const;
  std::optional<RowTable> TableOfRows() const;
  RowCount::Counted Counted() const;
  /// True while there is something that was not sent yet.
  bool Editing() const;
  void SortByCurrent(bool bAscending);
  /// Lets an order that was asked for in the grid go where the query has been given another one.
  void FollowCriterion();
  /// Fetches the rows, or the same rows sorted anew.
  void Fetch(const std::vector<SortColumn>* sorted);

  platform::TableQueryPtr m_query;
  ServerOrder m_order;
  TableTime m_time;
  /// The order of the table's query when its rows were fetched last; none before that.
  std::optional<Criterion> m_criterion;
  GridImport m_import;
  RowCount m_count;
  std::shared_ptr<int> m_life = std::make_shared<int>();  ///< gone with the grid
};

}  // namespace orvane::controls
