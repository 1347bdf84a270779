#include "console/tour/tour_hands.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>

#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr qint64 kPatienceMilliseconds = 120'000;
constexpr int kMostFileTries = 500;
constexpr const char* kLogonPicture = "1-logon.png";

/// What a menu shows of a caption.
QString WithoutMark(QString sCaption) {
  return sCaption.remove('&');
}

QAction* EntryOf(const QWidget& menu, const QString& sCaption) {
  for (auto* action : menu.actions()) {
    if (WithoutMark(action->text()) == sCaption && action->isEnabled()) return action;
  }
  throw Failure(failure::kObjectNotSet,
                "The menus do not offer \"" + sCaption.toStdString() + "\" now.", "tour");
}

}  // namespace

TourHands::TourHands(QWidget& window, const QDir& folder) : m_window(window), m_folder(folder) {
  connect(&m_answers, &QTimer::timeout, this, &TourHands::AnswerDialogs);
  m_answers.start(20);
}

void TourHands::Press(QWidget& widget, Qt::Key key) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }
}

void TourHands::Type(QWidget& widget, const QString& sText) {
  for (const QChar c : sText) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
    QApplication::sendEvent(&widget, &event);
  }
}

void TourHands::Click(QWidget& widget, const QPoint& at) {
  const auto global = widget.mapToGlobal(at);
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, at, global, Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
  }
}

void TourHands::Choose(QMenuBar& bar, const QString& sMenu, const QString& sEntry) {
  Click(bar, bar.actionGeometry(EntryOf(bar, sMenu)).center());
  Rest();
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  if (!menu) {
    throw Failure(failure::kComponent, "The menu \"" + sMenu.toStdString() + "\" does not come up.",
                  "tour");
  }
  Click(*menu, menu->actionGeometry(EntryOf(*menu, sEntry)).center());
}

void TourHands::WaitFor(const char* sWhat, const std::function<bool()>& condition) {
  QElapsedTimer elapsed;
  elapsed.start();
  QEventLoop loop;
  QTimer look;
  connect(&look, &QTimer::timeout, &loop, [&] {
    const bool bAlone = !QApplication::activeModalWidget();
    if ((bAlone && condition()) || !m_sMessage.empty() ||
        elapsed.elapsed() > kPatienceMilliseconds) {
      loop.quit();
    }
  });
  look.start(5);
  loop.exec();
  Check(sWhat);
  if (!condition()) throw Failure(failure::kTimeout, Text(sWhat) + " took too long.", "tour");
}

void TourHands::Check(const char* sWhat) const {
  if (m_sMessage.empty()) return;
  throw Failure(failure::kComponent, Text(sWhat) + " failed: " + m_sMessage, "tour");
}

void TourHands::Rest() {
  QCoreApplication::processEvents();
}

void TourHands::AnswerDialogs() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog) return;
  if (const auto* box = qobject_cast<QMessageBox*>(dialog)) {
    if (m_sMessage.empty()) m_sMessage = box->text().toStdString();
    Press(*dialog, Qt::Key_Escape);
    return;
  }
  if (qobject_cast<QFileDialog*>(dialog)) {
    AnswerFileDialog(*dialog);
    return;
  }
  // The logon dialog, answered with what it proposes.
  if (!m_folder.exists(kLogonPicture)) dialog->grab().save(m_folder.filePath(kLogonPicture));
  PressDefault(*dialog);
}

void TourHands::AnswerFileDialog(QDialog& dialog) {
  auto* box = dialog.findChild<QLineEdit*>();
  if (!box || m_sNextFile.isEmpty() || ++m_nFileTries > kMostFileTries) {
    GiveUp(dialog);
    return;
  }
  // The dialog may write into its box itself while it reads the folder.
  if (box->text() != m_sNextFile) {
    box->selectAll();
    Type(*box, m_sNextFile);
  } else {
    PressDefault(dialog);
  }
}

void TourHands::PressDefault(QDialog& dialog) {
  for (auto* button : dialog.findChildren<QPushButton*>()) {
    if (button->isDefault() && button->isEnabled()) {
      Click(*button, button->rect().center());
      return;
    }
  }
  GiveUp(dialog);
}

void TourHands::GiveUp(QDialog& dialog) {
  m_sMessage = "A dialog came up that cannot be answered.";
  dialog.reject();
}

void TourHands::Picture(const char* sName) {
  Rest();
  const auto sPath = m_folder.filePath(QString::fromLatin1(sName));
  if (!m_window.grab().save(sPath)) {
    throw Failure(failure::kStorage, "The picture " + sPath.toStdString() + " cannot be written.",
                  "tour");
  }
}

}  // namespace orvane::console
