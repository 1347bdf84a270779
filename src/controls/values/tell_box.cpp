#include "controls/values/tell_box.h"

#include <QPointer>
#include <new>
#include <stdexcept>
#include <system_error>

#include "widgets/message_box.h"

namespace orvane::controls {

void TellInBox(QWidget& parent, const QString& sTitle, const QString& sSentence) {
  const QPointer<widgets::MessageBox> box = new widgets::MessageBox(&parent);
  box->setWindowTitle(sTitle);
  box->setText(sSentence);
  box->setStandardButtons(QMessageBox::Ok);
  box->exec();
  delete box.data();
}

QString SentenceOf(const std::exception& exception) {
  if (dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ||
      dynamic_cast<const std::length_error*>(&exception) != nullptr) {
    return QStringLiteral(
        "There is not enough memory for the rows; show fewer of them or close other programs.");
  }
  if (const auto* const refused = dynamic_cast<const std::system_error*>(&exception)) {
    return "The file cannot be used: " + QString::fromStdString(refused->code().message()) +
           "; choose another name or folder.";
  }
  return QString::fromUtf8(exception.what());
}

}  // namespace orvane::controls
