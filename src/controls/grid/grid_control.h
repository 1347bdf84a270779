// The members that both grid controls offer, on one GridCore.
// Base of TableEditor and QueryResults; user-interface thread.
#pragma once

#include <functional>
#include <utility>

#include "controls/grid/grid_core.h"
#include "controls/grid/grid_window.h"
#include "platform/failure.h"
#include "platform/grids/grids.h"

namespace orvane::controls {

template <class Interface>
class GridControl : public Interface {
 public:
  GridControl(GridServices services, const QString& sName) : m_core(std::move(services), sName) {}

  void* Window() override { return static_cast<QWidget*>(&m_core.Window()); }
  void* LendStatusLine() override { return m_core.Window().LendStatusLine(); }
  void TakeStatusLineBack() override { m_core.Window().TakeStatusLineBack(); }
  platform::Text Layout() const override {
    return WrittenLayout(m_core.Window().Rows().Columns().Layout());
  }
  void Layout(const platform::Text& sLayout) override {
    m_core.Window().Rows().Layout(ReadLayout(sLayout));
  }

  platform::Boolean ShowSqlStatements() const override { return m_core.Window().SqlShown(); }
  void ShowSqlStatements(platform::Boolean bShow) override { m_core.Window().SqlShown(bShow); }
  void Connection(const platform::ConnectionPtr& cn) override { m_core.Connection(cn); }
  platform::Long Mode() const override { return m_lMode; }
  void Mode(platform::Long lMode) override { m_lMode = lMode; }

  void MoveFirst() override { m_core.Window().Rows().SelectRow(0); }
  void MoveLast() override {
    m_core.Window().Rows().SelectRow(m_core.Window().Rows().Model().Places() - 1);
  }
  void CellQuery() override {
    if (!CanCellQuery()) FailNotPossible(m_core.Editing().Filling().WhyNotFilled());
    m_core.Editing().Filling().CellQuery();
  }
  void DeleteSelectedRows() override {
    if (!DeleteAllowed()) FailNotPossible(m_core.Editing().Questions().WhyNotDeleted());
    m_core.Editing().Questions().DeleteSelectedRows();
  }
  platform::Boolean CanMove() const override { return m_core.Window().Rows().Model().Places() > 0; }
  platform::Boolean CanCellQuery() const override { return m_core.Editing().Filling().CanFill(); }
  platform::Boolean DeleteAllowed() const override { return m_core.Editing().DeleteAllowed(); }
  platform::Boolean RowsSelected() const override { return m_core.Window().Rows().RowsSelected(); }

  platform::Subscription OnRowColChange(std::function<void()> handler) override {
    return m_core.Events().rowColChange.Connect(std::move(handler));
  }
  platform::Subscription OnSelChange(std::function<void()> handler) override {
    return m_core.Events().selChange.Connect(std::move(handler));
  }
  platform::Subscription OnInsert(std::function<void()> handler) override {
    return m_core.Events().insert.Connect(std::move(handler));
  }
  platform::Subscription OnDelete(std::function<void()> handler) override {
    return m_core.Events().remove.Connect(std::move(handler));
  }

 protected:
  [[noreturn]] static void FailNotPossible(const platform::Text& sSentence) {
    throw platform::Failure(platform::failure::kNotSupported, sSentence);
  }

  GridCore m_core;

 private:
  platform::Long m_lMode = 0;
};

}  // namespace orvane::controls
