// What the user did while something ran that gives way to him: it is kept until nothing runs any
// more, and then done in the order in which it came, by whoever it was meant for. Used by
// InputHold; user-interface thread.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace orvane::console {

class KeptInput : public QObject {
  Q_OBJECT

 public:
  /// True for what is done on purpose: keys, clicks, shortcuts, closing a window. What only moves
  /// the pointer, or scrolls, does not have to wait.
  static bool IsMeant(const QObject& watched, const QEvent& event);

  /// Done is called when nothing is kept any more.
  KeptInput(std::function<bool()> mayDo, std::function<void()> done)
      : m_mayDo(std::move(mayDo)), m_done(std::move(done)) {}

  bool IsEmpty() const { return m_inputs.empty(); }
  /// True where what comes now has to stand behind what is kept.
  bool IsWaiting() const { return !m_inputs.empty() && m_nDoing == 0; }
  void Keep(QObject& watched, QEvent& event);
  /// Does all of it from the event loop, as far as it may be done then.
  void DoSoon();

 private:
  struct Input {
    QPointer<QObject> target;
    std::unique_ptr<QEvent> event;
  };
  void DoNext();
  void Do(const Input& input);

  std::function<bool()> m_mayDo;
  std::function<void()> m_done;
  std::deque<Input> m_inputs;
  int m_nDoing = 0;
};

}  // namespace orvane::console
