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

  /// Calls `done` once from the event loop, with a sentence where the file could not be written.
  /// One at a time.
  void Save(PointsInSight points, const QString& sPath, std::function<void(const QString&)> done);
  bool Busy() const { return m_bBusy; }
  /// Nothing is left of the file, and `done` is not called.
  void Stop();

 private:
  bool m_bBusy = false;
  int m_nRun = 0;         ///< told from by what was posted for an earlier one
  std::jthread m_worker;  ///< the last member: it is waited for before the others go
};

/// A dialog for the name of the file. Whoever chooses another kind of file sees the name end in it.
QFileDialog* NewSaveDialog(QWidget* parent);

}  // namespace orvane::trend
