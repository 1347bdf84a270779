// A list view of the result pane: its rows with columns, or as icons, over one model.
// User-interface thread.
#pragma once

#include <QStackedWidget>

#include "console/session/result_list_model.h"

class QAbstractItemView;
class QHelpEvent;
class QListView;
class QTreeView;

namespace orvane::console {

class ResultListDetails;
class ResultListOrder;

enum class ListStyle : std::uint8_t { Details, Icons };

class ResultList final : public QStackedWidget {
  Q_OBJECT

 public:
  explicit ResultList(QWidget* parent = nullptr);
  ~ResultList() override;

  /// Shows the model, which the list takes over; null shows nothing.
  void ShowModel(std::unique_ptr<ResultListModel> model);
  ResultListModel* Model() const noexcept { return m_model.get(); }

  void Style(ListStyle style);
  ListStyle Style() const noexcept { return m_style; }
  /// Scope items of the selected rows, in the order of the rows shown.
  std::vector<ScopeTreeItemPtr> SelectedItems() const;
  int SelectedRows() const;
  int RowCount() const;
  /// The view on the screen.
  QAbstractItemView* ActiveView() const;

  /// True when the user has changed a column's width since the model came.
  bool HasChosenWidths() const noexcept { return m_bChosenWidths; }
  std::vector<int> ColumnWidths() const;
  void ColumnWidths(const std::vector<int>& widths);

 signals:
  /// A row was double-clicked, or Enter pressed on it.
  void ItemOpened(const orvane::console::ScopeTreeItemPtr& item);
  /// Backspace: the item above is wanted.
  void UpRequested();
  /// Right click, Menu key or Shift+F10; the position is on the screen.
  void MenuRequested(const QPoint& position);
  void SelectionChanged();
  void RowsChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Prepare(QAbstractItemView* view);
  void SetWidths(int iFirstColumn);
  /// Gives the columns the room that there is beyond their own widths, unless widths were chosen:
  /// to each what its texts need, and to the last what is left.
  void FillRoom();
  /// The same from the event loop, once for all rows that come together.
  void FillRoomLater();
  /// The tool tip of a heading or a cell that its column cuts; others have none.
  bool ShowsTip(const QHelpEvent& event, bool bHeading);
  void SetGrid();

  ResultListDetails* m_details;
  QListView* m_icons;
  std::unique_ptr<ResultListModel> m_model;
  ResultListOrder* m_order;
  ListStyle m_style = ListStyle::Details;
  bool m_bChosenWidths = false;
  bool m_bGivenWidths = false;  // chosen before, and remembered
  bool m_bSettingWidths = false;
  bool m_bFillPosted = false;
};

}  // namespace orvane::console
