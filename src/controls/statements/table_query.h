// What a table's grid selects: the object behind the progid "ORVOLEDBCtls.TableQuery".
// Held by a table's node, run by a TableEditor, filled by the query builder; saved in the console
// document as one text. User-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "controls/statements/column_names.h"
#include "platform/grids/query_limits.h"
#include "platform/grids/table_query.h"

namespace orvane::controls {

class TableQuery : public platform::TableQuery {
 public:
  /// Keeps `life` as long as it lives; the library is not unloaded meanwhile.
  explicit TableQuery(std::shared_ptr<void> life = {});

  platform::Text Catalog() const override { return m_state.sCatalog; }
  void Catalog(const platform::Text& sCatalog) override;
  platform::Text Table() const override { return m_state.sTable; }
  void Table(const platform::Text& sTable) override;
  platform::ColumnList& Columns() override { return m_columns; }
  platform::Text FilterCondition() const override { return m_state.sFilterCondition; }
  void FilterCondition(const platform::Text& sFilterCondition) override;
  platform::Text TimeFilter() const override {
    return m_bFilterIsDefault ? m_state.sFilterCondition : m_state.sTimeFilter;
  }
  void TimeFilter(const platform::Text& sTimeFilter) override;
  void FilterIsDefault(platform::Boolean bDefault) override { m_bFilterIsDefault = bDefault; }
  std::optional<platform::SortCriterion> SortCriterion() const override {
    return m_state.sortCriterion;
  }
  void SortCriterion(const std::optional<platform::SortCriterion>& criterion) override;
  platform::Long MaxRows() const override { return m_state.lMaxRows; }
  void MaxRows(platform::Long lMaxRows) override;
  platform::Long QueryTimeout() const override { return m_state.lQueryTimeout; }
  void QueryTimeout(platform::Long lQueryTimeout) override;
  platform::Text SqlText() const override;
  [[nodiscard]] platform::Subscription OnChange(std::function<void()> handler) override;

  platform::Text ProgId() const override { return platform::kTableQueryProgId; }
  /// Carries every text byte by byte, also one that is not UTF-8.
  platform::Text WriteState() const override;
  void ReadState(const platform::Text& sState) override;

  /// Everything but the column list. The limits are those of a console that was never told others.
  struct State {
    platform::Text sCatalog;
    platform::Text sTable;
    platform::Text sFilterCondition;
    platform::Text sTimeFilter;
    std::optional<platform::SortCriterion> sortCriterion;
    platform::Long lMaxRows = platform::kUsualMaxRows;
    platform::Long lQueryTimeout = platform::kUsualQueryTimeout;
  };

 private:
  std::shared_ptr<void> m_life;
  State m_state;
  bool m_bFilterIsDefault = false;
  ColumnNames m_columns;
  platform::Signal<> m_change;
};

}  // namespace orvane::controls
