// What a list view of the result pane shows: the scope items beneath the selected one, or the rows
// that the snap-in put into the view. Nothing is copied: texts are read where they lie, when they
// are painted. User-interface thread.
#pragma once

#include <QAbstractTableModel>

#include "console/session/hosted_result_view.h"
#include "console/session/scope_tree.h"

namespace orvane::console {

class ResultListModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Column {
    QString sText;
    int iWidth = 0;  ///< pixels at 96 dots an inch; 0 lets the pane choose
  };

  /// Tree and view outlive the model; rows look as the tree's do. A view that the snap-in has put
  /// rows into lists these, any other one the scope items beneath its own.
  ResultListModel(ScopeTree& tree, HostedResultView& view, QObject* parent = nullptr);
  ~ResultListModel() override;

  const std::vector<Column>& Columns() const noexcept { return m_columns; }
  /// The scope item behind a row, or null for a row of the snap-in's own.
  ScopeTreeItemPtr ItemAt(int iRow) const;
  /// Image number of the row's picture.
  platform::Long ImageAt(int iRow) const;
  /// All sub-item texts of the row, shown or not.
  const std::vector<platform::Text>& TextsAt(int iRow) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void FollowTree();
  bool IsOwnParent(const QModelIndex& parent) const;
  /// Columns that the rows bring along beyond those of the view.
  void AddColumnsOfRows();

  ScopeTree& m_tree;
  HostedResultView& m_view;
  bool m_bOwnRows;
  std::vector<Column> m_columns;
};

}  // namespace orvane::console
