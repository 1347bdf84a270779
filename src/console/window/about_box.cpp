#include "console/window/about_box.h"

#include <QApplication>

#include "console/look/image_list.h"
#include "console/look/shown_text.h"
#include "console/session/console_session.h"
#include "widgets/message_box.h"

namespace orvane::console {

namespace {

QString AboutText(const char* sText) {
  return QCoreApplication::translate("AboutBox", sText);
}

}  // namespace

void ShowAboutBox(const ConsoleSession& session, QWidget* window) {
  const auto& snapIn = session.Description();
  widgets::MessageBox box(window);
  box.setObjectName("aboutBox");
  box.setWindowTitle(AboutText("About ORVANE Console"));
  box.setIconPixmap(ImageList::Badge("orvane-console").pixmap(64, 64));
  box.setTextFormat(Qt::PlainText);
  box.setText(AboutText("ORVANE Console %1").arg(QApplication::applicationVersion()));
  auto sText = AboutText("Manages ORVANE historian servers.");
  if (session.IsOpen()) {
    sText += "\n\n" + AboutText("Snap-in: %1 %2, %3")
                          .arg(Shown(snapIn.sDisplayName), Shown(snapIn.sVersion),
                               Shown(snapIn.sDescription));
  }
  sText +=
      "\n\n" + AboutText("Free software under the GNU General Public License, version 3 or later.");
  box.setInformativeText(sText);
  box.exec();
}

}  // namespace orvane::console
