// The window over the fake snap-in, for its tests: clicked and typed at as a user does, and waited
// for through the event loop. User-interface thread.
#pragma once

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "console/dialogs/message_boxes.h"
#include "console/dialogs/unsent_rows_question.h"
#include "console/document/unsent_rows.h"
#include "console/window/main_window.h"
#include "console/window/toolbar_view.h"
#include "tests/console/session/fake_snap_in.h"
#include "tests/console/window/panes.h"
#include "tests/console/window/shown_control.h"
#include "tests/fakes/until.h"

namespace orvane::console {

using fakes::Script;
using platform::ScopeItemPtr;
using platform::Services;
using platform::Text;

/// Runs the action on each modal dialog that comes up while this lives, and counts them.
class DialogAnswer {
 public:
  explicit DialogAnswer(std::function<void(QWidget*)> action) : m_action(std::move(action)) {
    QObject::connect(&m_timer, &QTimer::timeout, [this] {
      auto* dialog = QApplication::activeModalWidget();
      if (!dialog || dialog == m_last) return;
      m_last = dialog;
      ++m_iCount;
      m_action(dialog);
      m_last = nullptr;
    });
    m_timer.start(1);
  }
  int Count() const { return m_iCount; }

 private:
  std::function<void(QWidget*)> m_action;
  QTimer m_timer;
  QWidget* m_last = nullptr;
  int m_iCount = 0;
};

inline void Press(QWidget* box, QMessageBox::StandardButton button) {
  auto* message = qobject_cast<QMessageBox*>(box);
  ASSERT_NE(message, nullptr);
  QTest::mouseClick(message->button(button), Qt::LeftButton);
}

class NotedFailures final : public platform::FailureLog {
 public:
  void Note(const platform::Failure& failure) noexcept override { failures.push_back(failure); }
  std::vector<platform::Failure> failures;
};

/// A wait that a control has begun on its own lasts as long as the test says.
class ToldWait final : public platform::LongOperation {
 public:
  void Run(const Text&, const std::function<void(std::stop_token)>& work) override { work({}); }
  bool IsRunning() const override {
    ++iAsked;
    return bRunning;
  }
  bool bRunning = false;
  mutable int iAsked = 0;
};

class MainWindowTest : public testing::Test {
 protected:
  MainWindowTest() : m_settings(m_folder.filePath("settings.ini"), QSettings::IniFormat) {
    m_script->expand = fakes::ExpandUsualTree;
    MakeWindow();
    m_window->NewDocument();
    Settle();
  }

  void MakeWindow() {
    WindowParts parts;
    parts.create = fakes::MakeCreator(m_script, MakeShownControl);
    m_boxes = std::make_shared<MessageBoxes>(m_log);
    parts.services.ui = m_boxes;
    parts.services.failures = m_boxes;
    parts.services.longOperation = m_wait;
    parts.boxes = m_boxes.get();
    parts.services.unsentRows = m_unsentRows;
    parts.eventEnded = [this] { ++m_iEventsEnded; };
    parts.settings = &m_settings;
    m_window = std::make_unique<MainWindow>(std::move(parts));
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
  }

  static void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
  }
  bool Waits(const std::function<bool()>& condition) { return tests::Until(condition); }

  ScopePane& Scope() { return ScopeOf(*m_window); }
  ResultPane& Results() { return ResultsOf(*m_window); }
  ConsoleSession& Session() { return m_window->Session(); }
  ScopeTreeItemPtr Find(const Text& sKey) {
    return sKey.empty() ? Session().Tree().StaticItem() : Session().Tree().Find(sKey);
  }
  QModelIndex IndexOf(const Text& sKey) { return Session().Tree().IndexOf(*Find(sKey)); }

  void ClickItem(const Text& sKey) {
    const auto at = Scope().visualRect(IndexOf(sKey)).center();
    QTest::mouseClick(Scope().viewport(), Qt::LeftButton, {}, at);
    Settle();
  }
  void ClickExpandMark(const Text& sKey) {
    const auto rect = Scope().visualRect(IndexOf(sKey));
    QTest::mouseClick(Scope().viewport(), Qt::LeftButton, {},
                      {rect.left() - Scope().indentation() / 2, rect.center().y()});
    Settle();
  }
  /// The right button's press, release and what the window system makes of them.
  void RightClick(const Text& sKey) {
    const auto at = Scope().visualRect(IndexOf(sKey)).center();
    QTest::mouseClick(Scope().viewport(), Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, Scope().viewport()->mapToGlobal(at));
    QApplication::sendEvent(Scope().viewport(), &event);
    Settle();
  }
  void ExpandToTables() {
    for (const char* sKey : {"", "alpha", "alpha.Catalogs", "alpha.Catalogs.Machine"}) {
      ClickExpandMark(sKey);
    }
  }
  QAction* Action(const char* sName) { return m_window->findChild<QAction*>(sName); }
  QTreeView* DetailsView() { return Results().List().findChild<QTreeView*>("resultDetails"); }
  QTabBar& ViewTabs() { return *m_window->findChild<QTabBar*>("viewTabs"); }
  ToolbarView& Toolbar() { return *m_window->findChild<ToolbarView*>("snapInToolbar"); }
  QAction* ButtonAction(const char* sKey) { return Toolbar().findChild<QAction*>(sKey); }
  std::vector<Text> ListTexts(int iColumn = 0) {
    std::vector<Text> texts;
    const auto* model = DetailsView()->model();
    for (int i = 0; i < model->rowCount(); ++i) {
      texts.push_back(model->index(i, iColumn).data().toString().toStdString());
    }
    return texts;
  }
  void DoubleClickRow(int iRow) {
    auto* view = DetailsView();
    const auto at = view->visualRect(view->model()->index(iRow, 0)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
    Settle();
  }
  /// A command that changes what would be saved.
  void DoWork(const Text& sText = "changed") {
    m_script->sSaved = sText;
    Session().ClickMenu("m_mnuOptions", 1, HostedSelection({Find("")}));
  }
  Text Path(const char* sName) { return m_folder.filePath(sName).toStdString(); }

  QTemporaryDir m_folder;
  QSettings m_settings;
  std::shared_ptr<Script> m_script = std::make_shared<Script>();
  int m_iEventsEnded = 0;
  std::shared_ptr<NotedFailures> m_log = std::make_shared<NotedFailures>();
  std::shared_ptr<ToldWait> m_wait = std::make_shared<ToldWait>();
  std::shared_ptr<MessageBoxes> m_boxes;
  std::shared_ptr<UnsentRows> m_unsentRows = std::make_shared<UnsentRows>(AskToGiveRowsUp);
  std::unique_ptr<MainWindow> m_window;
};

}  // namespace orvane::console
