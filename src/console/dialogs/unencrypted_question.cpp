#include "console/dialogs/unencrypted_question.h"

#include <QCoreApplication>

#include "console/look/pointer_rest.h"
#include "console/look/program_title.h"
#include "console/look/window_in_front.h"
#include "platform/one_line.h"
#include "widgets/message_box.h"

namespace orvane::console {

namespace {

struct UnencryptedQuestion {
  Q_DECLARE_TR_FUNCTIONS(UnencryptedQuestion)
};

}  // namespace

platform::Boolean AskToGoUnencrypted(const platform::Text& sServer) {
  const PointerRest rest;
  widgets::MessageBox box(WindowInFront());
  box.setObjectName("unencryptedBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(UnencryptedQuestion::tr("The server\n\n%1\n\nis on another machine and does not "
                                      "encrypt what is sent. Send the password all the same?")
                  .arg(QString::fromStdString(platform::OneLine(sServer))));
  box.setInformativeText(UnencryptedQuestion::tr(
      "Whoever listens on the way can read the password and all rows, and change them. Nothing has "
      "been sent so far. After \"Yes\" you are not asked again about this server until the program "
      "ends."));
  box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

}  // namespace orvane::console
