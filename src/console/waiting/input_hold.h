// Holds back the user's input from the whole program while something runs, except from the panel
// of that run, or from a window that shows what it fetches. Used by Waiting; user-interface thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

#include "console/waiting/waiting_panel.h"

namespace orvane::console {

class InputHold : public QObject {
  Q_OBJECT

 public:
  /// One run; runs lie on each other like plates.
  struct Run {
    std::function<bool()> isDone;
    std::function<void()> cancel;
    QPointer<WaitingPanel> panel;
    bool bShown = false;  ///< a window with LongOperation::kOwnInput shows the run instead
  };

  InputHold();

  /// The run must be popped before it goes.
  void Push(Run& run);
  void Pop(Run& run);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  std::vector<Run*> m_runs;
};

}  // namespace orvane::console
