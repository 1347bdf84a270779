// A control with an entry box as its window, and a line that tells of it, for the tests of what
// shows controls. User-interface thread.
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <memory>

#include "platform/grids/grids.h"

namespace orvane::console {

class ShownControl final : public platform::Control {
 public:
  ShownControl() {
    m_window.setObjectName("fakeControl");
    m_line->setObjectName("fakeStatusLine");
  }
  void* Window() override { return &m_window; }
  void* LendStatusLine() override { return m_line; }
  void TakeStatusLineBack() override { m_line->setParent(&m_window); }
  platform::Text Layout() const override { return m_sLayout; }
  void Layout(const platform::Text& sLayout) override { m_sLayout = sLayout; }
  void Import() override { m_window.setText("importing"); }

 private:
  platform::Text m_sLayout;
  QLineEdit m_window;
  QLabel* m_line = new QLabel("50 rows", &m_window);
};

inline std::shared_ptr<platform::Control> MakeShownControl() {
  return std::make_shared<ShownControl>();
}

}  // namespace orvane::console
