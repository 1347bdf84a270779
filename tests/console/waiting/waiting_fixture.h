// Work that lasts as long as a test says, and a window that counts what reaches it. For the tests
// of waits; user-interface thread, but for the gate.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QMainWindow>
#include <QTest>
#include <QTimer>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>

#include "console/waiting/waiting_panel.h"
#include "platform/failure.h"

namespace orvane::console {

/// Work that lasts until it is released or stopped.
class Gate {
 public:
  void Open() {
    {
      const std::lock_guard lock(m_mutex);
      m_bOpen = true;
    }
    m_changed.notify_all();
  }
  void Pass(std::stop_token stop) {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait(lock, stop, [this] { return m_bOpen; })) {
      throw platform::Failure(platform::failure::kCancelled, "Cancelled.");
    }
  }

 private:
  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  bool m_bOpen = false;
};

class Window : public QMainWindow {
 public:
  Window() {
    setGeometry(0, 0, 800, 600);
    setCentralWidget(&m_edit);
    m_action.setShortcut(Qt::CTRL | Qt::Key_G);
    connect(&m_action, &QAction::triggered, this, [this] { ++m_nTriggered; });
    addAction(&m_action);
    show();
    activateWindow();
    m_edit.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(this));
  }

  int Paints() const { return m_nPaints; }
  int Triggered() const { return m_nTriggered; }
  int Presses() const { return m_edit.m_nPresses; }
  QLineEdit& Edit() { return m_edit; }
  WaitingPanel* Panel() const { return findChild<WaitingPanel*>(); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    ++m_nPaints;
    QMainWindow::paintEvent(event);
  }

 private:
  class CountingEdit : public QLineEdit {
   public:
    int m_nPresses = 0;

   protected:
    void mousePressEvent(QMouseEvent* event) override {
      ++m_nPresses;
      QLineEdit::mousePressEvent(event);
    }
    void wheelEvent(QWheelEvent*) override { ++m_nPresses; }
    void contextMenuEvent(QContextMenuEvent*) override { ++m_nPresses; }
  };

  QAction m_action;
  CountingEdit m_edit;
  int m_nPaints = 0;
  int m_nTriggered = 0;
};

/// Calls the steps once the panel is on the window.
inline void OnPanel(Window& window, const std::function<void(WaitingPanel&)>& steps) {
  auto* timer = new QTimer(&window);
  QObject::connect(timer, &QTimer::timeout, &window, [&window, timer, steps] {
    WaitingPanel* panel = window.Panel();
    if (!panel) return;
    timer->stop();
    timer->deleteLater();
    steps(*panel);
  });
  timer->start(5);
}

}  // namespace orvane::console
