#include "console/dialogs/logon_dialog.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <thread>

#include "tests/fakes/until.h"

namespace orvane::console {
namespace {

using ado::LogonRequest;

/// The modal dialog on the screen, with its controls.
struct Shown {
  LogonDialog* dialog = dynamic_cast<LogonDialog*>(QApplication::activeModalWidget());
  QComboBox* server = dialog->findChild<QComboBox*>("m_cmbServer");
  QLineEdit* user = dialog->findChild<QLineEdit*>("m_txtUser");
  QLineEdit* password = dialog->findChild<QLineEdit*>("m_txtPassword");
  QPushButton* ok = dialog->findChild<QPushButton*>("m_btnOk");
  QPushButton* cancel = dialog->findChild<QPushButton*>("m_btnCancel");
};

/// Asks, taking the steps at the dialog once it is active.
bool Ask(LogonRequest& request, const std::function<void(Shown&)>& steps) {
  bool bSeen = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (!QApplication::activeModalWidget() || bSeen) return;
    bSeen = true;
    EXPECT_TRUE(QTest::qWaitForWindowActive(QApplication::activeModalWidget()));
    Shown shown;
    steps(shown);
  });
  timer.start(5);
  LogonDialogPrompt prompt;
  const bool bAccepted = prompt.Ask(request);
  EXPECT_TRUE(bSeen);
  return bAccepted;
}

LogonRequest Request() {
  LogonRequest request;
  request.sServer = "localhost";
  request.sUser = "anna";
  request.knownServers = {"localhost", "plant"};
  return request;
}

TEST(logon_dialog, shows_what_it_is_asked_for) {
  LogonRequest request = Request();
  Ask(request, [](Shown& shown) {
    EXPECT_EQ(shown.dialog->windowTitle(), "Log On to ORVANE Server");
    EXPECT_EQ(shown.server->currentText(), "localhost");
    EXPECT_EQ(shown.server->count(), 2);
    EXPECT_EQ(shown.server->itemText(1), "plant");
    EXPECT_TRUE(shown.server->isEnabled());
    EXPECT_TRUE(shown.server->isEditable());
    EXPECT_EQ(shown.user->text(), "anna");
    EXPECT_EQ(shown.password->text(), "");
    EXPECT_EQ(shown.password->echoMode(), QLineEdit::Password);
    EXPECT_EQ(shown.ok->text(), "OK");
    EXPECT_TRUE(shown.ok->isDefault());
    EXPECT_EQ(shown.cancel->text(), "Cancel");
    EXPECT_EQ(shown.server->accessibleName(), "Server");
    EXPECT_EQ(shown.user->accessibleName(), "User");
    EXPECT_EQ(shown.password->accessibleName(), "Password");
    QStringList labels;
    for (const QLabel* label : shown.dialog->findChildren<QLabel*>()) labels << label->text();
    EXPECT_EQ(labels, (QStringList{"&Server:", "&User:", "&Password:"}));
    shown.dialog->reject();
  });
}

TEST(logon_dialog, ok_gives_back_what_was_typed) {
  LogonRequest request = Request();
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    shown.server->lineEdit()->selectAll();
    QTest::keyClicks(shown.server->lineEdit(), " far away ");
    shown.user->selectAll();
    QTest::keyClicks(shown.user, "otto");
    QTest::keyClicks(shown.password, "geheim");
    shown.password->insert("Ü");
    QTest::mouseClick(shown.ok, Qt::LeftButton);
  }));
  EXPECT_EQ(request.sServer, "far away");
  EXPECT_EQ(request.sUser, "otto");
  EXPECT_EQ(request.sPassword, "geheimÜ");
}

TEST(logon_dialog, overwrites_the_password_where_it_stood) {
  LogonRequest request = Request();
  request.sPassword = "geheim";
  QString sTaken;
  QString sLeft;
  {
    LogonDialog dialog(request, nullptr);
    sTaken = dialog.findChild<QLineEdit*>("m_txtPassword")->text();
    dialog.TakeInto(request);
    EXPECT_EQ(request.sPassword, "geheim");
  }
  {
    LogonDialog dialog(request, nullptr);
    sLeft = dialog.findChild<QLineEdit*>("m_txtPassword")->text();
  }
  EXPECT_EQ(sTaken, QString(6, QChar(0)));
  EXPECT_EQ(sLeft, QString(6, QChar(0)));
}

TEST(logon_dialog, a_known_server_can_be_picked_by_key) {
  LogonRequest request = Request();
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    shown.server->setFocus();
    QTest::keyClick(shown.server, Qt::Key_Down);
    QTest::keyClick(shown.server, Qt::Key_Return);
  }));
  EXPECT_EQ(request.sServer, "plant");
}

TEST(logon_dialog, a_known_server_is_offered_as_one_types) {
  LogonRequest request = Request();
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    shown.server->lineEdit()->selectAll();
    QTest::keyClicks(shown.server->lineEdit(), "pl");
    EXPECT_EQ(shown.server->lineEdit()->selectedText(), "ant");
    QTest::mouseClick(shown.ok, Qt::LeftButton);
  }));
  EXPECT_EQ(request.sServer, "plant");
}

TEST(logon_dialog, enter_is_ok) {
  LogonRequest request = Request();
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    QTest::keyClicks(shown.password, "x");
    QTest::keyClick(shown.password, Qt::Key_Return);
  }));
  EXPECT_EQ(request.sPassword, "x");
}

TEST(logon_dialog, cancel_and_escape_leave_the_request_alone) {
  for (const bool bEscape : {false, true}) {
    LogonRequest request = Request();
    EXPECT_FALSE(Ask(request, [&](Shown& shown) {
      QTest::keyClicks(shown.user, "otto");
      QTest::keyClicks(shown.password, "x");
      if (bEscape) {
        QTest::keyClick(shown.password, Qt::Key_Escape);
      } else {
        QTest::mouseClick(shown.cancel, Qt::LeftButton);
      }
    }));
    EXPECT_EQ(request.sServer, "localhost");
    EXPECT_EQ(request.sUser, "anna");
    EXPECT_EQ(request.sPassword, "");
  }
}

TEST(logon_dialog, the_server_is_fixed_when_its_selection_is_off) {
  LogonRequest request = Request();
  request.bServerSelectable = false;
  request.sServer = " as stored ";
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    EXPECT_FALSE(shown.server->isEnabled());
    EXPECT_EQ(shown.server->currentText(), " as stored ");
    QTest::keyClicks(shown.server, "other");
    QTest::keyClick(shown.password, Qt::Key_Return);
  }));
  EXPECT_EQ(request.sServer, " as stored ");
}

TEST(logon_dialog, the_first_known_server_is_offered_when_none_is_given) {
  LogonRequest request = Request();
  request.sServer = "";
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    EXPECT_EQ(shown.server->currentText(), "localhost");
    QTest::mouseClick(shown.ok, Qt::LeftButton);
  }));
  EXPECT_EQ(request.sServer, "localhost");
}

TEST(logon_dialog, ok_needs_a_server) {
  LogonRequest request;
  EXPECT_FALSE(Ask(request, [](Shown& shown) {
    EXPECT_TRUE(shown.server->lineEdit()->hasFocus());
    EXPECT_FALSE(shown.ok->isEnabled());
    QTest::keyClick(shown.password, Qt::Key_Return);
    EXPECT_TRUE(shown.dialog->isVisible());
    QTest::keyClicks(shown.server->lineEdit(), "   ");
    EXPECT_FALSE(shown.ok->isEnabled());
    QTest::keyClicks(shown.server->lineEdit(), "a");
    EXPECT_TRUE(shown.ok->isEnabled());
    shown.dialog->reject();
  }));
}

TEST(logon_dialog, the_focus_starts_on_the_server_where_it_can_be_chosen_else_on_the_password) {
  for (const char* const sUser : {"anna", ""}) {
    LogonRequest request = Request();
    request.sUser = sUser;
    Ask(request, [](Shown& shown) {
      EXPECT_TRUE(shown.server->lineEdit()->hasFocus());
      EXPECT_EQ(shown.server->lineEdit()->selectedText(), "localhost");
      shown.dialog->reject();
    });
    request.bServerSelectable = false;
    Ask(request, [](Shown& shown) {
      EXPECT_TRUE(shown.password->hasFocus());
      shown.dialog->reject();
    });
  }
}

TEST(logon_dialog, enter_presses_the_button_that_has_the_focus) {
  LogonRequest request = Request();
  EXPECT_FALSE(Ask(request, [](Shown& shown) {
    shown.cancel->setFocus();
    QTest::keyClick(shown.cancel, Qt::Key_Return);
  }));
}

TEST(logon_dialog, its_list_shows_fifteen_servers_and_cuts_long_names) {
  LogonRequest request = Request();
  Ask(request, [](Shown& shown) {
    EXPECT_EQ(shown.server->maxVisibleItems(), 15);
    EXPECT_EQ(shown.server->view()->textElideMode(), Qt::ElideMiddle);
    shown.dialog->reject();
  });
}

TEST(logon_dialog, tab_walks_through_the_controls_in_their_order) {
  LogonRequest request = Request();
  Ask(request, [](Shown& shown) {
    shown.server->setFocus();
    for (QWidget* next : {static_cast<QWidget*>(shown.user), static_cast<QWidget*>(shown.password),
                          static_cast<QWidget*>(shown.ok), static_cast<QWidget*>(shown.cancel)}) {
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
      EXPECT_TRUE(next->hasFocus()) << next->objectName().toStdString();
    }
    shown.dialog->reject();
  });
}

TEST(logon_dialog, keeps_no_password) {
  const LogonRequest asked = Request();
  LogonDialog dialog(asked, nullptr);
  auto* password = dialog.findChild<QLineEdit*>("m_txtPassword");
  QTest::keyClicks(password, "geheim");
  LogonRequest answered = asked;
  dialog.TakeInto(answered);
  EXPECT_EQ(answered.sPassword, "geheim");
  EXPECT_EQ(password->text(), "");
  EXPECT_FALSE(password->isUndoAvailable());
  LogonRequest again = asked;
  dialog.TakeInto(again);
  EXPECT_EQ(again.sPassword, "");
}

TEST(logon_dialog, the_password_cannot_be_copied_out) {
  const LogonRequest asked = Request();
  LogonDialog dialog(asked, nullptr);
  auto* password = dialog.findChild<QLineEdit*>("m_txtPassword");
  QTest::keyClicks(password, "geheim");
  EXPECT_FALSE(password->displayText().contains("geheim"));
  EXPECT_TRUE(password->inputMethodHints().testFlag(Qt::ImhSensitiveData));
}

TEST(logon_dialog, the_hourglass_is_laid_aside_while_it_is_shown) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  LogonRequest request = Request();
  Ask(request, [](Shown& shown) {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    shown.dialog->reject();
  });
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  QApplication::restoreOverrideCursor();
}

TEST(logon_dialog, comes_up_over_the_window_in_front_although_none_is_active) {
  QWidget window;
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  QApplication::setActiveWindow(nullptr);
  LogonRequest request = Request();
  Ask(request, [&](Shown& shown) {
    EXPECT_EQ(shown.dialog->parentWidget(), &window);
    shown.dialog->reject();
  });
}

TEST(logon_dialog, can_be_asked_for_from_another_thread) {
  LogonRequest request = Request();
  bool bAccepted = false;
  std::atomic<bool> bDone = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [] {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
      QTest::keyClick(dialog, Qt::Key_Return);
    }
  });
  timer.start(5);
  std::thread thread([&] {
    LogonDialogPrompt prompt;
    bAccepted = prompt.Ask(request);
    bDone = true;
  });
  EXPECT_TRUE(tests::Until([&] { return bDone.load(); }));
  thread.join();
  EXPECT_TRUE(bAccepted);
}

TEST(logon_dialog, offers_a_known_server_while_its_name_is_typed) {
  LogonRequest request = Request();
  EXPECT_TRUE(Ask(request, [](Shown& shown) {
    shown.server->lineEdit()->selectAll();
    QTest::keyClicks(shown.server->lineEdit(), "PL");
    EXPECT_EQ(shown.server->currentText().toLower(), "plant");
    EXPECT_EQ(shown.server->lineEdit()->selectedText(), "ant") << "what is typed on replaces it";
    QTest::keyClicks(shown.server->lineEdit(), "x");
    EXPECT_EQ(shown.server->currentText(), "PLx");
    shown.dialog->accept();
  }));
  EXPECT_EQ(request.sServer, "PLx");
}

/// The prompt's answer about the server; the button that was default, and what the box said.
struct Unencrypted {
  bool bYes = false;
  int nBoxes = 0;
  QString sText;
  QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
};

Unencrypted MayGoUnencrypted(LogonDialogPrompt& prompt, const platform::Text& sServer,
                             QMessageBox::StandardButton answer) {
  Unencrypted seen;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    auto* const box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    ++seen.nBoxes;
    seen.sText = box->text();
    seen.defaultButton = box->standardButton(box->defaultButton());
    box->button(answer)->click();
  });
  timer.start(5);
  seen.bYes = prompt.MayGoUnencrypted(sServer);
  return seen;
}

TEST(logon_dialog, asks_until_yes_before_a_password_goes_out_unencrypted) {
  LogonDialogPrompt prompt;
  const auto refused = MayGoUnencrypted(prompt, "postgresql://far/d", QMessageBox::No);
  EXPECT_FALSE(refused.bYes);
  EXPECT_EQ(refused.nBoxes, 1);
  EXPECT_EQ(refused.defaultButton, QMessageBox::No);
  EXPECT_EQ(
      refused.sText,
      "The server\n\npostgresql://far/d\n\nis on another machine and does not encrypt what is "
      "sent. Send the password all the same?");

  const auto allowed = MayGoUnencrypted(prompt, "postgresql://far/d", QMessageBox::Yes);
  EXPECT_TRUE(allowed.bYes);
  EXPECT_EQ(allowed.nBoxes, 1) << "a No is not remembered";

  const auto again = MayGoUnencrypted(prompt, "postgresql://far/d", QMessageBox::No);
  EXPECT_TRUE(again.bYes);
  EXPECT_EQ(again.nBoxes, 0);
  const auto other = MayGoUnencrypted(prompt, "postgresql://other/d\n", QMessageBox::No);
  EXPECT_FALSE(other.bYes) << "each server by itself";
  EXPECT_EQ(other.nBoxes, 1);
}

}  // namespace
}  // namespace orvane::console
