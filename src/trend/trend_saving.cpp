#include "trend/trend_saving.h"

#include <QFileDialog>
#include <QFileInfo>
#include <utility>

#include "platform/failure.h"
#include "trend/trend_loading.h"

namespace orvane::trend {

namespace {

/// The end of the names that a kind of file is chosen for: "png" of "Picture (*.png)".
QString EndOf(const QString& sKind) {
  return sKind.section(QStringLiteral("*."), -1).chopped(1);
}

}  // namespace

void TrendSaving::Save(PointsInSight points, const QString& sPath,
                       std::function<void(const Saved&)> done) {
  m_bBusy = true;
  m_worker = std::jthread([this, points = std::move(points), sPath,
                           done = std::move(done)](const std::stop_token& stop) mutable {
    Saved saved;
    try {
      saved.sPath = QString::fromStdString(SavePoints(points, sPath, stop).string());
    } catch (const platform::Failure& failed) {
      if (failed.Number() != platform::failure::kCancelled) saved.sWhyNot = SentenceOfTrend(failed);
    } catch (const std::exception& failed) {
      saved.sWhyNot = SentenceOfTrend(failed);
    }
    points.lines.reset();
    QMetaObject::invokeMethod(
        this,
        [this, saved, done = std::move(done)] {
          m_bBusy = false;
          done(saved);
        },
        Qt::QueuedConnection);
  });
}

QFileDialog* NewSaveDialog(QWidget* parent) {
  auto* dialog =
      new QFileDialog(parent, "Save Trend", {},
                      "Picture (*.png);;Vector Picture (*.svg);;Comma-Separated Values (*.csv)");
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix("png");
  dialog->selectFile("trend.png");
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& sKind) {
    dialog->setDefaultSuffix(EndOf(sKind));
    const QFileInfo named(dialog->selectedFiles().value(0));
    const bool bKnown = QStringList{"png", "svg", "csv"}.contains(named.suffix().toLower());
    const QString sName = bKnown ? named.completeBaseName() : named.fileName();
    if (!sName.isEmpty()) dialog->selectFile(sName + u'.' + EndOf(sKind));
  });
  return dialog;
}

}  // namespace orvane::trend
