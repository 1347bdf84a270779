// Runs something again and again while somebody can see it: never two at once, and not while the
// window is hidden or another one wants an answer. Used by a table's grid to follow what comes;
// user-interface thread.
#pragma once

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <optional>

namespace orvane::controls {

class Follower : public QObject {
 public:
  /// The run may destroy the follower. Where it may not run it is tried again a pause later. The
  /// clock is the window's child "pause".
  Follower(QWidget& window, std::function<bool()> mayRun, std::function<void()> run);
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;
  ~Follower() override;

  /// The pause between the end of a run and the next one; none stops.
  void Every(std::optional<std::chrono::seconds> pause);
  bool IsFollowing() const { return m_pause.has_value(); }
  /// What happens when a pause is over.
  void PauseOver();

 private:
  bool IsSeen() const;

  QPointer<QWidget> m_window;
  std::function<bool()> m_mayRun;
  std::function<void()> m_run;
  std::optional<std::chrono::seconds> m_pause;
  QPointer<QTimer> m_timer;  ///< none when the window is gone
  bool m_bRunning = false;
};

}  // namespace orvane::controls
