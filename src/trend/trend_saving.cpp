#include "trend/trend_saving.h"

#include <QFileDialog>
#include <QFileInfo>
#include <utility>

#include "trend/trend_loading.h"

namespace orvane::trend {

namespace {

/// The end of the names that a kind of file is chosen for: "png" of "Picture (*.png)".
QString EndOf(const QString& sKind) {
  return sKind.section(QStringLiteral("*."), -1).chopped(1);
}

}  // namespace

void TrendSaving::Save(PointsInSight points, const QString& sPath,
                       std::function<void(const QString&)> done) {
  Stop();
  m_bBusy = true;
  m_worker = std::jthread([this, points = std::move(points), sPath, done = std::move(done),
                           nRun = m_nRun](const std::stop_token& stop) mutable {
    QString sWhyNot;
    try {
      SavePoints(points, sPath, stop);
    } catch (const std::exception& failed) {
      sWhyNot = SentenceOfTrend(failed);
    }
    points.lines.reset();
    if (stop.stop_requested()) return;
    QMetaObject::invokeMethod(
        this,
        [this, nRun, sWhyNot, done = std::move(done)] {
          if (nRun != m_nRun) return;
          m_bBusy = false;
          done(sWhyNot);
        },
        Qt::QueuedConnection);
  });
}

void TrendSaving::Stop() {
  m_worker = {};
  ++m_nRun;
  m_bBusy = false;
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
