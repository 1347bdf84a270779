// The components' dialogs over their forms on widgets, with a user who acts by mouse and keys while
// a dialog is shown, and a user interface that counts beeps.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPalette>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "console/forms/qt_forms.h"
#include "platform/failure.h"
#include "platform/services.h"
#include "tests/fakes/until.h"

namespace orvane::console {

class CountingUserInterface : public platform::UserInterface {
 public:
  platform::MsgBoxResult MsgBox(const platform::Text&, platform::MsgBoxButtons,
                                platform::MsgBoxIcon, const platform::Text&) override {
    return platform::MsgBoxResult::Ok;
  }
  platform::Long MousePointer() const override { return platform::kMousePointerDefault; }
  void MousePointer(platform::Long) override {}
  void Beep() override { ++nBeeps; }
  void DoEvents() override {}

  int nBeeps = 0;
};

class FormsFixture : public testing::Test {
 protected:
  FormsFixture() {
    services.forms = std::make_shared<QtForms>([this] { return owner.get(); });
    services.ui = ui;
  }

  /// Shows the dialog; the user acts once it has the keys, and closes it by the window's own button
  /// if it is still there afterwards.
  template <class Dialog>
  void Show(Dialog& dialog, const std::function<void(QWidget&)>& user) {
    bool bActed = false;
    QTimer::singleShot(0, qApp, [&] {
      QWidget* const window = QApplication::activeModalWidget();
      if (!window) return;
      bActed = QTest::qWaitForWindowActive(window);
      try {
        if (bActed) user(*window);
      } catch (const std::exception& missing) {
        ADD_FAILURE() << missing.what();
      }
      if (window->isVisible()) window->close();
    });
    dialog.ShowModal();
    EXPECT_TRUE(bActed);
  }

  std::unique_ptr<QWidget> owner;
  std::shared_ptr<CountingUserInterface> ui = std::make_shared<CountingUserInterface>();
  platform::Services services;
};

inline QPalette DarkPalette() {
  QPalette dark(QColor(0x31, 0x36, 0x3b));
  dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
  dark.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
  return dark;
}

/// The widget of a control.
template <class W = QWidget>
W& Find(QWidget& window, const char* sName) {
  W* const found = window.findChild<W*>(QLatin1String(sName));
  if (!found) throw std::runtime_error(std::string("there is no widget named ") + sName);
  return *found;
}

inline void Click(QWidget& window, const char* sButton) {
  QTest::mouseClick(&Find(window, sButton), Qt::LeftButton);
}

/// A key as it comes from the keyboard: to whatever has the focus.
inline void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QWidget* const focus = QApplication::focusWidget();
  QTest::keyClick(focus ? focus : QApplication::activeWindow(), key, modifiers);
}

inline void Type(const char* sText) {
  QTest::keyClicks(QApplication::focusWidget(), QLatin1String(sText));
}

/// An access key: the toolkit shows the button pressed for a moment before it clicks it.
inline bool AccessKey(Qt::Key key, const std::function<bool()>& done) {
  Key(key, Qt::AltModifier);
  return tests::Until(done);
}

/// The name of the widget that has the focus.
inline std::string Focus() {
  const QWidget* const focus = QApplication::focusWidget();
  return focus ? focus->objectName().toStdString() : std::string();
}

}  // namespace orvane::console
