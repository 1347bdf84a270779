#include "console/dialogs/logon_dialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>
#include <cstring>
#include <functional>

#include "console/dialogs/unencrypted_question.h"
#include "console/look/pointer_rest.h"
#include "console/look/window_in_front.h"
#include "widgets/tool_tip.h"

namespace orvane::console {

namespace {

/// Of the dialog's width, for names of servers with their folders.
constexpr int kCharacters = 57;

/// Overwrites the characters where they stand. Only of memory that belongs to the text: that of a
/// literal cannot be written.
void Overwrite(QString& sText) {
  if (!sText.data_ptr().isMutable()) return;
  explicit_bzero(const_cast<QChar*>(sText.constData()),
                 static_cast<std::size_t>(sText.size()) * sizeof(QChar));
}

/// Overwrites the box's text before dropping it. What the box let go of while it was typed, as its
/// text grew, is out of reach.
void Wipe(QLineEdit& box) {
  QString sText = box.text();  // shares the characters with the box
  Overwrite(sText);
  box.clear();
}

/// Returns when it is done.
void OnUserInterfaceThread(const std::function<void()>& work) {
  if (QThread::currentThread() == qApp->thread()) {
    work();
  } else {
    QMetaObject::invokeMethod(qApp, work, Qt::BlockingQueuedConnection);
  }
}

}  // namespace

LogonDialog::LogonDialog(const ado::LogonRequest& request, QWidget* parent)
    : QDialog(parent),
      m_cmbServer(new QComboBox),
      m_txtUser(new QLineEdit),
      m_txtPassword(new QLineEdit) {
  setObjectName("logonDialog");
  setWindowTitle(tr("Log On to ORVANE Server"));

  m_cmbServer->setObjectName("m_cmbServer");
  m_cmbServer->setEditable(true);
  m_cmbServer->setInsertPolicy(QComboBox::NoInsert);
  m_cmbServer->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_cmbServer->setMinimumContentsLength(10);
  m_cmbServer->setMaxVisibleItems(15);
  m_cmbServer->view()->setTextElideMode(Qt::ElideMiddle);
  m_cmbServer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  m_cmbServer->setAccessibleName(tr("Server"));
  for (const platform::Text& sServer : request.knownServers) {
    const auto sShown = QString::fromStdString(sServer);
    m_cmbServer->addItem(sShown);
    m_cmbServer->setItemData(m_cmbServer->count() - 1, widgets::ToolTipOf(sShown), Qt::ToolTipRole);
  }
  // The first known server is the default one.
  const bool bDefault = request.sServer.empty() && request.bServerSelectable;
  m_cmbServer->setEditText(bDefault && m_cmbServer->count() > 0
                               ? m_cmbServer->itemText(0)
                               : QString::fromStdString(request.sServer));
  m_cmbServer->setEnabled(request.bServerSelectable);

  m_txtUser->setObjectName("m_txtUser");
  m_txtUser->setAccessibleName(tr("User"));
  m_txtUser->setText(QString::fromStdString(request.sUser));

  m_txtPassword->setObjectName("m_txtPassword");
  m_txtPassword->setAccessibleName(tr("Password"));
  m_txtPassword->setEchoMode(QLineEdit::Password);
  m_txtPassword->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData |
                                     Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
  m_txtPassword->setText(QString::fromStdString(request.sPassword));

  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->addRow(tr("&Server:"), m_cmbServer);
  form->addRow(tr("&User:"), m_txtUser);
  form->addRow(tr("&Password:"), m_txtPassword);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  m_btnOk = buttons->button(QDialogButtonBox::Ok);
  m_btnOk->setObjectName("m_btnOk");
  m_btnOk->setText(tr("OK"));
  m_btnOk->setDefault(true);
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("m_btnCancel");
  buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_cmbServer, &QComboBox::editTextChanged, this, [this] { UpdateButtons(); });

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addSpacing(8);
  layout->addWidget(buttons);
  layout->setSizeConstraint(QLayout::SetMinimumSize);
  resize(sizeHint().expandedTo({kCharacters * fontMetrics().averageCharWidth(), 0}));

  UpdateButtons();
  if (m_cmbServer->isEnabled()) {
    m_cmbServer->setFocus();
    m_cmbServer->lineEdit()->selectAll();
  } else {
    m_txtPassword->setFocus();
  }
}

LogonDialog::~LogonDialog() {
  Wipe(*m_txtPassword);
}

void LogonDialog::UpdateButtons() {
  m_btnOk->setEnabled(!m_cmbServer->isEnabled() || !m_cmbServer->currentText().trimmed().isEmpty());
}

void LogonDialog::TakeInto(ado::LogonRequest& request) {
  if (m_cmbServer->isEnabled()) {
    request.sServer = m_cmbServer->currentText().trimmed().toStdString();
  }
  request.sUser = m_txtUser->text().toStdString();
  QByteArray password = m_txtPassword->text().toUtf8();
  request.sPassword.assign(password.constData(), static_cast<std::size_t>(password.size()));
  explicit_bzero(password.data(), static_cast<std::size_t>(password.size()));
  Wipe(*m_txtPassword);
}

platform::Boolean LogonDialogPrompt::Ask(ado::LogonRequest& request) {
  bool bAccepted = false;
  OnUserInterfaceThread([&] {
    const PointerRest rest;
    LogonDialog dialog(request, WindowInFront());
    bAccepted = dialog.exec() == QDialog::Accepted;
    if (bAccepted) dialog.TakeInto(request);
  });
  return bAccepted;
}

platform::Boolean LogonDialogPrompt::MayGoUnencrypted(const platform::Text& sServer) {
  bool bYes = false;
  OnUserInterfaceThread([&] {
    bYes = m_unencrypted.contains(sServer) || AskToGoUnencrypted(sServer);
    if (bYes) m_unencrypted.insert(sServer);
  });
  return bYes;
}

}  // namespace orvane::console
