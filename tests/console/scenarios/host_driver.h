// The scenarios' driver over the real window: the snap-in, the grids and the provider are loaded as
// components of the build tree, the server is an embedded historian in a folder of its own, and the
// user is mouse and keys. One thread.
#pragma once

#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <deque>
#include <filesystem>

#include "console/app/host.h"
#include "tests/scenarios/driver.h"

class QAction;
class QDialog;
class QMenu;
class QMessageBox;

namespace orvane::console {

class HostDriver : public scenarios::Driver {
 public:
  using Text = platform::Text;

  HostDriver();
  ~HostDriver() override;

  void AddServer(const scenarios::ServerSetup& server) override;
  void AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                 const std::vector<platform::Value>& values) override;
  void AnswerLogon(scenarios::LogonAnswer answer) override { m_logonAnswer = answer; }
  void ChooseServer(const Text& sServer) override { m_sChosenServer = sServer; }
  platform::Long LogonsSeen() const override { return m_lLogons; }
  platform::Long StatementsSent() const override { return *m_statements; }

  void NewDocument() override;
  void OpenDocument(const Fill& fill) override;
  void SaveAndReopen() override;
  platform::Value SavedValue(const Text& sName) const override;

  platform::Boolean HasItem(const Text& sKey) const override;
  void Expand(const Text& sKey) override;
  void Collapse(const Text& sKey) override;
  void Select(const Text& sKey) override;
  Text Selected() const override;
  platform::Boolean HasExpandMark(const Text& sKey) const override;
  std::vector<Text> Children(const Text& sKey) const override;
  Text DisplayName(const Text& sKey) const override;
  Text Tree() const override;

  void ShowView(const Text& sViewName) override;
  std::vector<scenarios::ListRow> ListRows() const override;
  scenarios::GridSnapshot Grid() const override;

  std::vector<scenarios::MenuEntry> Menu(const Text& sKey, scenarios::MenuWay way) override;
  void Choose(const Text& sKey, const Text& sCaption, scenarios::MenuWay way) override;
  std::vector<scenarios::ButtonSeen> Toolbar() const override;
  void Press(const Text& sButton) override;
  platform::Boolean CanRefresh() const override;
  void Refresh() override;
  platform::Boolean IsHourglassShown() const override;

  void AnswerForm(scenarios::FormUser user) override { m_formUsers.push_back(std::move(user)); }
  void AnswerBox(scenarios::BoxAnswer answer) override { m_boxAnswers.push_back(answer); }
  std::vector<scenarios::BoxSeen> TakeBoxes() override;

  MainWindow& Window() { return *m_window; }
  /// What is typed as the password in logon dialogs; nothing when never called.
  void TypePassword(const Text& sPassword) { m_sPassword = sPassword; }
  /// Everything that the console writes lies in it, or in the home of the user.
  std::filesystem::path Folder() const { return m_folder.path().toStdString(); }

 private:
  ScopeTreeItemPtr Item(const Text& sKey) const;
  std::shared_ptr<platform::Grid> ShownGrid() const;
  void AnswerDialog();
  void Activate();
  void AnswerMessageBox(QMessageBox& box);
  /// Yes gives the rows up, No keeps them.
  void AnswerUnsentRows(QMessageBox& box);
  void AnswerLogonDialog(QDialog& dialog);
  void AnswerFormDialog(QDialog& dialog);
  /// The item's menu, open; null, which fails the case, when none came up.
  QMenu* OpenMenu(const Text& sKey, scenarios::MenuWay way);
  /// The snap-in's entries; the console's own must be set apart from them.
  static QList<QAction*> EntriesOf(const QMenu& menu);
  void WaitFor(const std::function<bool()>& condition);
  QRect RectOf(const ScopeTreeItemPtr& item);

  QTemporaryDir m_folder;
  QSettings m_settings;
  std::unique_ptr<console::Host> m_host;
  std::unique_ptr<MainWindow> m_window;
  QTimer m_answers;
  std::shared_ptr<platform::Long> m_statements = std::make_shared<platform::Long>(0);
  scenarios::LogonAnswer m_logonAnswer = scenarios::LogonAnswer::Ok;
  Text m_sChosenServer;
  Text m_sPassword;
  platform::Long m_lLogons = 0;
  std::vector<scenarios::BoxSeen> m_boxes;
  std::deque<scenarios::BoxAnswer> m_boxAnswers;
  std::deque<scenarios::FormUser> m_formUsers;
  bool m_bAnswering = false;
  int m_iDocuments = 0;
};

}  // namespace orvane::console
