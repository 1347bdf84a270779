// A list of names under a header, with a model of its own: the list views of forms. Several rows
// are chosen together as in any list of files.
#pragma once

#include <QAbstractListModel>
#include <QTreeView>
#include <functional>
#include <vector>

#include "platform/types.h"

namespace orvane::console {

class ColumnListModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  const platform::Text& At(int iRow) const { return m_names[static_cast<std::size_t>(iRow)]; }
  void Append(const platform::Text& sName);
  void Remove(int iRow);
  void Clear();

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int iRole) const override;
  QVariant headerData(int iSection, Qt::Orientation orientation, int iRole) const override;

 private:
  std::vector<platform::Text> m_names;
};

class ColumnList : public QTreeView {
 public:
  explicit ColumnList(QWidget* parent = nullptr);

  ColumnListModel& Names() { return m_names; }
  const ColumnListModel& Names() const { return m_names; }
  /// Called when the user has clicked, or chosen otherwise, by mouse or key.
  void OnChoice(std::function<void()> handler) { m_choice = std::move(handler); }
  /// Called when the user has clicked a row twice.
  void OnDblClick(std::function<void()> handler) { m_dblClick = std::move(handler); }
  /// Chooses or leaves out a row without calling anyone; a chosen one can be seen and is the one
  /// that keys go on from.
  void Choose(int iRow, bool bChosen);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  ColumnListModel m_names;
  std::function<void()> m_choice;
  std::function<void()> m_dblClick;
};

}  // namespace orvane::console
