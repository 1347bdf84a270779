// Lists the rows of a grid that are not stored, what was changed in each and why it could not be
// stored, to be stored, settled or discarded. Opened from the grid's strip; user-interface thread.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <vector>

#include "controls/editing/edit_session.h"
#include "controls/values/cell_format.h"

class QLabel;
class QPushButton;
class QTreeWidget;

namespace orvane::controls {

class PendingReview : public QDialog {
  Q_OBJECT

 public:
  struct Actions {
    std::function<void()> storeAll;
    std::function<void(platform::RowIndex)> goTo;
    std::function<void(platform::RowIndex)> settle;
  };

  /// The session outlives the dialog, which closes when no row is pending any more.
  PendingReview(EditSession& session, CellFormat format, Actions actions, QWidget* parent);

  /// Shows what is pending now.
  void Refresh();

 private:
  QString ChangesOf(platform::RowIndex row) const;
  std::vector<platform::RowIndex> Chosen() const;
  void Discard(const std::vector<platform::RowIndex>& rows);
  void UpdateButtons();

  EditSession& m_session;
  CellFormat m_format;
  Actions m_actions;
  std::weak_ptr<void> m_life;  ///< of the session
  QTreeWidget* m_list;
  QLabel* m_more;
  QPushButton* m_goTo;
  QPushButton* m_settle;
  QPushButton* m_discard;
};

}  // namespace orvane::controls
