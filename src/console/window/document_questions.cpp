#include "console/window/document_questions.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>

#include "console/document/document_format.h"
#include "console/look/program_title.h"
#include "console/look/shown_text.h"
#include "widgets/message_box.h"

namespace orvane::console {

using platform::Text;

namespace {

struct Questions {
  Q_DECLARE_TR_FUNCTIONS(Questions)
};

QString tr(const char* sText) {
  return Questions::tr(sText);
}

std::optional<Text> FileOf(QFileDialog& dialog) {
  dialog.setNameFilters(
      {tr("Console documents (*.%1)").arg(QLatin1String(kDocumentSuffix)), tr("All files (*)")});
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.selectedFiles().first().toStdString();
}

QString FolderOf(const Document& document) {
  return QFileInfo(Shown(document.Path())).path();
}

}  // namespace

std::optional<Text> AskForFileToOpen(const Document& document, QWidget* window) {
  QFileDialog dialog(window, tr("Open"), FolderOf(document));
  dialog.setObjectName("openDialog");
  dialog.setFileMode(QFileDialog::ExistingFile);
  return FileOf(dialog);
}

std::optional<Text> AskForFileToSave(const Document& document, QWidget* window) {
  QFileDialog dialog(window, tr("Save As"), FolderOf(document));
  dialog.setObjectName("saveDialog");
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setDefaultSuffix(QLatin1String(kDocumentSuffix));
  dialog.selectFile(Shown(document.Name()) + "." + kDocumentSuffix);
  return FileOf(dialog);
}

UnsavedAnswer AskAboutUnsavedWork(const Document& document, QWidget* window) {
  widgets::MessageBox box(window);
  box.setObjectName("unsavedWorkBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(tr("Save the changes to “%1”?").arg(Shown(document.Name())));
  box.setIcon(QMessageBox::Question);
  box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
  box.setInformativeText(tr("Changes that are not saved are lost."));
  box.setDefaultButton(QMessageBox::Save);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Save:
      return UnsavedAnswer::Save;
    case QMessageBox::Discard:
      return UnsavedAnswer::Discard;
    default:
      return UnsavedAnswer::Cancel;
  }
}

bool AskToOpenDoubtful(const Text& sPath, DocumentDoubt doubt, QWidget* window) {
  const bool bChanged = doubt == DocumentDoubt::ChangedOutside;
  const QString sName = QFileInfo(Shown(sPath)).fileName();
  widgets::MessageBox box(window);
  box.setObjectName("doubtfulDocumentBox");
  box.setWindowTitle(ProgramTitle());
  box.setText((bChanged ? tr("“%1” was changed outside the console since it was saved.")
                        : tr("“%1” is not whole: its last save broke off."))
                  .arg(sName));
  box.setIcon(QMessageBox::Warning);
  box.setInformativeText(
      bChanged ? tr("It can be read whole. Open it if you know who changed it, and save it then.")
               : tr("What was being saved is there whole. Open that, and save it again."));
  auto* open = box.addButton(tr("&Open"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == open;
}

bool AskToReplaceChanged(const Document& document, QWidget* window) {
  widgets::MessageBox box(window);
  box.setObjectName("changedOnDiskBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(tr("“%1” was changed by another program.").arg(Shown(document.Name())));
  box.setIcon(QMessageBox::Warning);
  box.setInformativeText(tr("Saving replaces what that program wrote."));
  auto* replace = box.addButton(tr("&Replace"), QMessageBox::DestructiveRole);
  box.setDefaultButton(box.addButton(QMessageBox::Cancel));
  box.exec();
  return box.clickedButton() == replace;
}

void ShowFailureBox(const Text& sSentence, QWidget* window) {
  widgets::MessageBox box(window);
  box.setObjectName("failureBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(Shown(sSentence));
  box.setIcon(QMessageBox::Warning);
  box.exec();
}

}  // namespace orvane::console
