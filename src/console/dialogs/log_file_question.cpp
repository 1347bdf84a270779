#include "console/dialogs/log_file_question.h"

#include <QCoreApplication>
#include <filesystem>

#include "console/look/pointer_rest.h"
#include "console/look/program_title.h"
#include "console/look/window_in_front.h"
#include "platform/one_line.h"
#include "widgets/message_box.h"

namespace orvane::console {

using platform::Text;

namespace {

struct Question {
  Q_DECLARE_TR_FUNCTIONS(Question)
};

/// The file as it would be reached, whatever links lead to it.
Text WhereItLies(const Text& sFile) {
  std::error_code error;
  const std::filesystem::path path = sFile;
  const auto folder = std::filesystem::weakly_canonical(path.parent_path(), error);
  return error ? sFile : (folder / path.filename()).string();
}

}  // namespace

platform::Boolean AskToWriteLogFile(const Text& sFile) {
  const PointerRest rest;
  widgets::MessageBox box(WindowInFront());
  box.setObjectName("logFileBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(
      Question::tr("The document wants a log of what is done with this server to be written "
                   "to the file\n\n%1\n\nWrite it?")
          .arg(QString::fromStdString(platform::OneLine(WhereItLies(sFile)))));
  box.setInformativeText(Question::tr(
      "Answer \"No\" unless you know who made the document. The server is connected in "
      "either case, and you are asked again when the document is opened again."));
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

}  // namespace orvane::console
