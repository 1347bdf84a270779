// The logon dialog and its prompt, through which the connection layer asks for server, user and
// password, and whether the password may be sent as it is. User-interface thread. The password
// lives in the request alone; the dialog overwrites the copy in its box, as far as the box lets it.
#pragma once

#include <QDialog>
#include <set>

#include "ado/logon_prompt.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace orvane::console {

class LogonDialog : public QDialog {
  Q_OBJECT

 public:
  LogonDialog(const ado::LogonRequest& request, QWidget* parent);
  /// Wipes the password.
  ~LogonDialog() override;

  /// Moves what was entered into the request; the password box is empty afterwards.
  void TakeInto(ado::LogonRequest& request);

 private:
  void UpdateButtons();

  QComboBox* m_cmbServer;
  QLineEdit* m_txtUser;
  QLineEdit* m_txtPassword;
  QPushButton* m_btnOk;
};

class LogonDialogPrompt : public ado::LogonPrompt {
 public:
  /// Shows the dialog over the window in front. Called off the user-interface thread, asks there
  /// and waits for the answer.
  platform::Boolean Ask(ado::LogonRequest& request) override;
  /// Asks until the answer for the server is yes, which holds as long as this lives. "No" is the
  /// default.
  platform::Boolean MayGoUnencrypted(const platform::Text& sServer) override;

 private:
  std::set<platform::Text> m_unencrypted;  ///< servers for which it was said
};

}  // namespace orvane::console
