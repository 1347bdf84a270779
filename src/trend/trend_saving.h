// Saves the points of a trend beside the window, however many they are, and asks for the file's
// name. Part of the trend's view; user-interface thread.
#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <thread>

#include "trend/trend_output.h"

class QFileDialog;

namespace orvane::trend {

class TrendSaving : public QObject {
 public:
  using QObject::QObject;

  struct Saved {
    QString sPath;    ///< of the file; empty where there is none
    QString sWhyNot;  ///< a sentence; empty where it was stopped
  };

  /// Calls `done` once from the event loop. One at a time.
  void Save(PointsInSight points, const QString& sPath, std::function<void(const Saved&)> done);
  bool Busy() const { return m_bBusy; }
  /// Has it end soon; nothing is left of the file then. The disk may take its time, and is not
  /// waited for: `done` tells.
  void Stop() { m_worker.request_stop(); }

 private:
  bool m_bBusy = false;
  std::jthread m_worker;  ///< the last member: it is waited for before the others go
};

/// A dialog for the name of the file. Whoever chooses another kind of file sees the name end in it.
QFileDialog* NewSaveDialog(QWidget* parent);

}  // namespace orvane::trend
