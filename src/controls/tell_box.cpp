#include "controls/tell_box.h"

#include <QMessageBox>
#include <QPointer>

namespace orvane::controls {

void TellInBox(QWidget& parent, const QString& sTitle, const QString& sSentence) {
  const QPointer<QMessageBox> box =
      new QMessageBox(QMessageBox::NoIcon, sTitle, sSentence, QMessageBox::Ok, &parent);
  box->setTextFormat(Qt::PlainText);
  box->exec();
  delete box.data();
}

}  // namespace orvane::controls
