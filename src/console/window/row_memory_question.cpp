#include "console/window/row_memory_question.h"

#include <QInputDialog>
#include <algorithm>

#include "console/document/row_memory.h"

namespace orvane::console {

void AskForRowMemory(QWidget& parent, QSettings& settings) {
  constexpr int kMegabyteBits = 20;
  constexpr int kStep = 256;
  auto* dialog = new QInputDialog(&parent);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setObjectName("rowMemory");
  dialog->setWindowTitle(QInputDialog::tr("Memory for Rows"));
  dialog->setInputMode(QInputDialog::IntInput);
  dialog->setLabelText(
      QInputDialog::tr("Megabytes that the rows of all grids may take together, 16 at least;\n"
                       "0 is a quarter of this machine's memory. What comes beyond lies in a\n"
                       "temporary file. It holds when the console is started again."));
  dialog->setIntRange(0, kMostRowMegabytes);
  dialog->setIntStep(kStep);
  dialog->setIntValue(static_cast<int>(RowMemory(settings).value_or(0) >> kMegabyteBits));
  QObject::connect(dialog, &QInputDialog::intValueSelected, dialog, [&settings](int nMegabytes) {
    if (nMegabytes == 0) return RowMemory(settings, std::nullopt);
    RowMemory(settings, std::max(kLeastRowMegabytes, nMegabytes));
  });
  dialog->open();
}

}  // namespace orvane::console
