// The two grids, without a window: what the snap-in does to them goes into a log.
#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/conversions.h"
#include "platform/grids/grids.h"
#include "tests/fakes/historian.h"

namespace orvane::fakes {

/// What both fakes share. Grid is platform::TableEditor or platform::QueryResults.
template <class Grid>
class FakeGrid : public Grid {
 public:
  using Long = platform::Long;
  using Boolean = platform::Boolean;

  void* Window() override { return nullptr; }
  Boolean ShowSqlStatements() const override { return m_bSqlStatements; }
  void ShowSqlStatements(Boolean bShow) override {
    Log(std::string("ShowSqlStatements ") + (bShow ? "True" : "False"));
    m_bSqlStatements = bShow;
  }
  void Connection(const platform::ConnectionPtr& cn) override {
    Log(cn ? "Connection" : "Connection none");
    connection = cn;
  }
  Long Mode() const override { return m_lMode; }
  void Mode(Long lMode) override {
    Log("Mode " + std::to_string(lMode));
    m_lMode = lMode;
  }
  void MoveFirst() override { Log("MoveFirst"); }
  void MoveLast() override { Log("MoveLast"); }
  void CellQuery() override { Log("CellQuery"); }
  void DeleteSelectedRows() override { Log("DeleteSelectedRows"); }
  Boolean CanMove() const override { return bCanMove; }
  Boolean CanCellQuery() const override { return bCanCellQuery; }
  Boolean DeleteAllowed() const override { return bDeleteAllowed; }
  Boolean RowsSelected() const override { return bRowsSelected; }
  platform::Subscription OnRowColChange(std::function<void()> handler) override {
    return rowColChange.Connect(std::move(handler));
  }
  platform::Subscription OnSelChange(std::function<void()> handler) override {
    return selChange.Connect(std::move(handler));
  }
  platform::Subscription OnInsert(std::function<void()> handler) override {
    return insert.Connect(std::move(handler));
  }
  platform::Subscription OnDelete(std::function<void()> handler) override {
    return deleted.Connect(std::move(handler));
  }

  /// Fails when it is the step told to, otherwise writes the step down.
  void Log(const std::string& sStep) {
    if (sStep == sFailing) throw platform::Failure(3808, "The grid cannot do that.");
    log.push_back(sStep);
  }
  /// Runs a statement as the real grids do, and shows its rows.
  void Run(const platform::Text& sSqlText, Long lMaxRows, Long lTimeout) {
    if (!connection) throw platform::Failure(91, "The grid has no connection; connect the server.");
    FakeCommand command;
    command.ActiveConnection(connection);
    command.CommandText(sSqlText);
    command.MaxRecords(lMaxRows);
    command.CommandTimeout(lTimeout);
    recordset = command.Execute(nullptr, platform::kOptionUnspecified);
    rowColChange.Raise();
  }

  std::vector<std::string> log;
  std::string sFailing;
  platform::ConnectionPtr connection;
  platform::RecordsetPtr recordset;
  bool bCanMove = true;
  bool bCanSort = true;
  bool bCanCellQuery = true;
  bool bDeleteAllowed = true;
  bool bRowsSelected = false;
  platform::Signal<> rowColChange;
  platform::Signal<> selChange;
  platform::Signal<> insert;
  platform::Signal<> deleted;

 private:
  bool m_bSqlStatements = false;
  Long m_lMode = -1;
};

class FakeTableEditor : public FakeGrid<platform::TableEditor> {
 public:
  void TableQuery(const platform::TableQueryPtr& query) override {
    Log("TableQuery");
    tableQuery = query;
  }
  void Requery() override {
    Log("Requery");
    Run(tableQuery->SqlText(), tableQuery->MaxRows(), tableQuery->QueryTimeout());
    recordset = Chosen(*recordset);
    lUpdatability = 3;
  }
  void AttachRecordset(const platform::RecordsetPtr& rs, Long lValue) override {
    Log((rs ? "AttachRecordset " : "AttachRecordset none ") + std::to_string(lValue));
    recordset = rs;
    lUpdatability = lValue;
    rowColChange.Raise();
  }
  platform::RecordsetPtr DetachRecordset(Long& lValue) override {
    Log("DetachRecordset");
    lValue = lUpdatability;
    return recordset;
  }
  void SortAscending() override { Log("SortAscending"); }
  void SortDescending() override { Log("SortDescending"); }
  Boolean CanSort() const override { return bCanSort; }
  platform::Subscription OnHeadClick(std::function<void()> handler) override {
    return headClick.Connect(std::move(handler));
  }

  platform::Subscription OnFilterKept(std::function<void()> handler) override {
    return filterKept.Connect(std::move(handler));
  }

  platform::TableQueryPtr tableQuery;
  Long lUpdatability = 0;
  platform::Signal<> filterKept;
  platform::Signal<> headClick;

 private:
  /// What the table query chooses of the table: columns, sorting (by text), and the filter where
  /// it reads "Column = 'text'".
  std::shared_ptr<FakeRecordset> Chosen(const platform::Recordset& all) const {
    const auto at = [&](const platform::Text& sColumn) {
      for (platform::ColumnIndex c = 0; c < all.FieldCount(); ++c) {
        if (all.FieldAt(c).Name() == sColumn) return c;
      }
      return platform::ColumnIndex{-1};
    };
    std::vector<platform::RowIndex> order;
    for (platform::RowIndex r = 0; r < all.RecordCount(); ++r) {
      const platform::Text sFilter = tableQuery->FilterCondition();
      const auto nEquals = sFilter.find(" = '");
      const auto filtered = nEquals == platform::Text::npos ? -1 : at(sFilter.substr(0, nEquals));
      if (filtered < 0 ||
          "'" + platform::ToText(all.ValueAt(r, filtered)) + "'" == sFilter.substr(nEquals + 3)) {
        order.push_back(r);
      }
    }
    if (const auto sort = tableQuery->SortCriterion(); sort && at(sort->sColumn) >= 0) {
      const auto column = at(sort->sColumn);
      std::stable_sort(order.begin(), order.end(), [&](auto a, auto b) {
        if (!sort->bAscending) std::swap(a, b);
        return platform::ToText(all.ValueAt(a, column)) < platform::ToText(all.ValueAt(b, column));
      });
    }
    std::vector<platform::ColumnIndex> chosen;
    for (Long l = 1; l <= tableQuery->Columns().Count(); ++l) {
      if (at(tableQuery->Columns().Item(l)) >= 0)
        chosen.push_back(at(tableQuery->Columns().Item(l)));
    }
    if (chosen.empty()) {
      for (platform::ColumnIndex c = 0; c < all.FieldCount(); ++c) chosen.push_back(c);
    }
    std::vector<FakeColumn> columns;
    for (const auto c : chosen) columns.push_back({all.FieldAt(c).Name(), all.FieldAt(c).Type()});
    std::vector<FakeRecordset::Row> rows;
    for (const auto r : order) {
      auto& row = rows.emplace_back();
      for (const auto c : chosen) row.push_back(all.ValueAt(r, c));
    }
    return std::make_shared<FakeRecordset>(std::move(columns), std::move(rows));
  }
};

class FakeQueryResults : public FakeGrid<platform::QueryResults> {
 public:
  using Text = platform::Text;
  Text QueryName() const override { return m_sQueryName; }
  void QueryName(const Text& sName) override {
    Log("QueryName " + sName);
    m_sQueryName = sName;
  }
  Text SqlText() const override { return m_sSqlText; }
  void SqlText(const Text& sSqlText) override {
    Log("SqlText " + sSqlText);
    m_sSqlText = sSqlText;
  }
  Long MaxRows() const override { return m_lMaxRows; }
  void MaxRows(Long lMaxRows) override {
    Log("MaxRows " + std::to_string(lMaxRows));
    m_lMaxRows = lMaxRows;
  }
  Long QueryTimeout() const override { return m_lQueryTimeout; }
  void QueryTimeout(Long lQueryTimeout) override {
    Log("QueryTimeout " + std::to_string(lQueryTimeout));
    m_lQueryTimeout = lQueryTimeout;
  }
  void Execute() override {
    Log("Execute");
    Run(m_sSqlText, m_lMaxRows, m_lQueryTimeout);
  }
  platform::RecordsetPtr Recordset() const override { return recordset; }
  void Recordset(const platform::RecordsetPtr& rs) override {
    Log(rs ? "Recordset" : "Recordset none");
    recordset = rs;
  }

 private:
  Text m_sQueryName;
  Text m_sSqlText;
  Long m_lMaxRows = 0;
  Long m_lQueryTimeout = 0;
};

}  // namespace orvane::fakes
