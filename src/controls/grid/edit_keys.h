// Keys and clicks that begin to edit, and why they do not where nothing can be edited. Part of the
// editing of a grid; user-interface thread.
#pragma once

#include <QObject>
#include <functional>

#include "controls/editing/edit_session.h"

class QKeyEvent;

namespace orvane::controls {

class GridWindow;

class EditKeys final : public QObject {
 public:
  struct Actions {
    std::function<void()> start;  ///< edits the current cell
    std::function<void()> redo;
  };

  EditKeys(GridWindow& window, const EditSession& session, Actions actions, QObject* parent);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Press(const QKeyEvent& key);
  /// True where the current cell cannot be edited; the strip says why.
  bool RefuseEdit();
  /// True where the key that deletes rows has nothing to delete; the strip says why.
  bool RefuseDelete();

  GridWindow& m_window;
  const EditSession& m_session;
  Actions m_actions;
};

}  // namespace orvane::controls
