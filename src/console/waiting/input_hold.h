// Holds back the user's input from the whole program while something runs, except from the panel
// of that run, or from a window that shows what it fetches. Keys that are typed where they are to
// be kept are typed when nothing runs any more; so is what a run gives way to done then. Used by
// Waiting; user-interface thread.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "console/waiting/kept_input.h"
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
    bool bGivesWay = false;  ///< what the user does ends it
    bool bShown = false;     ///< a window with LongOperation::kOwnInput shows the run instead
  };

  InputHold();

  /// The run must be popped before it goes.
  void Push(Run& run);
  void Pop(Run& run);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// A key that waits, and the widget that has it kept.
  struct Key {
    QPointer<QWidget> keeper;
    std::unique_ptr<QEvent> event;
  };

  /// The topmost run that is not done, or none. Those that give way are told to end, and count
  /// where there is no other.
  Run* Holding(const QObject& watched, const QEvent& event);
  /// Both are true for what is held back.
  bool HoldBack(Run& run, QObject* watched, QEvent* event);
  bool HoldKeys(QObject* watched, const QEvent& event);
  /// True when the event is a key that is kept.
  bool Keep(const Run& run, QObject& watched, const QEvent& event);
  void TypeKept();
  bool IsIdle() const { return m_runs.empty() && m_keys.empty() && m_given.IsEmpty(); }
  void Uninstall();

  std::vector<Run*> m_runs;
  KeptInput m_given;  ///< what a run gave way to
  std::deque<Key> m_keys;
  bool m_bClicked = false;  ///< what is typed after a click that was held back is for elsewhere
  bool m_bTyping = false;
};

}  // namespace orvane::console
