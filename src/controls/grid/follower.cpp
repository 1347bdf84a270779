#include "controls/grid/follower.h"

#include <QApplication>

namespace orvane::controls {

Follower::Follower(QWidget& window, std::function<bool()> mayRun, std::function<void()> run)
    : m_window(&window),
      m_mayRun(std::move(mayRun)),
      m_run(std::move(run)),
      m_timer(new QTimer(&window)) {
  m_timer->setObjectName("pause");
  m_timer->setSingleShot(true);
  connect(m_timer, &QTimer::timeout, this, [this] { PauseOver(); });
}

Follower::~Follower() {
  delete m_timer;
}

void Follower::Every(std::optional<std::chrono::seconds> pause) {
  m_pause = pause;
  if (!m_timer) return;
  m_timer->stop();
  if (m_pause && !m_bRunning) m_timer->start(*m_pause);
}

bool Follower::IsSeen() const {
  if (!m_window || !m_window->isVisible() || m_window->window()->isMinimized()) return false;
  // An answer is waited for, or a menu is open: the rows beneath must not change now.
  return QApplication::activeModalWidget() == nullptr &&
         QApplication::activePopupWidget() == nullptr;
}

void Follower::PauseOver() {
  if (!m_pause || m_bRunning) return;
  if (IsSeen() && m_mayRun()) {
    const QPointer<Follower> self(this);
    m_bRunning = true;
    m_run();
    if (!self) return;
    m_bRunning = false;
  }
  if (m_pause && m_timer) m_timer->start(*m_pause);
}

}  // namespace orvane::controls
