#include "console/dialogs/unsent_rows_question.h"

#include <QCoreApplication>
#include <QPushButton>

#include "console/look/pointer_rest.h"
#include "console/look/program_title.h"
#include "console/look/shown_text.h"
#include "console/look/window_in_front.h"
#include "widgets/message_box.h"

namespace orvane::console {

namespace {

struct UnsentRowsQuestion {
  Q_DECLARE_TR_FUNCTIONS(UnsentRowsQuestion)
};

}  // namespace

platform::Boolean AskToGiveRowsUp(const platform::Text& sSentence) {
  const PointerRest rest;
  widgets::MessageBox box(WindowInFront());
  box.setObjectName("unsentRowsBox");
  box.setWindowTitle(ProgramTitle());
  box.setText(Shown(sSentence));
  box.setIcon(QMessageBox::Question);
  box.setInformativeText(UnsentRowsQuestion::tr("What was changed in them is lost if you go on."));
  const auto* discard =
      box.addButton(UnsentRowsQuestion::tr("&Discard Changes"), QMessageBox::DestructiveRole);
  auto* cancel = box.addButton(QMessageBox::Cancel);
  box.setDefaultButton(cancel);
  box.setEscapeButton(cancel);
  box.exec();
  return box.clickedButton() == discard;
}

}  // namespace orvane::console
