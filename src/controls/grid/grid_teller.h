// What listeners of a grid are told, and when: each change once, whatever it is made of. Part of
// the grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

#include "controls/grid/grid_events.h"

namespace orvane::controls {

class RowView;

class GridTeller final : public QObject {
 public:
  /// Tells from now on when the current cell moves and the selection changes.
  GridTeller(RowView& rows, std::shared_ptr<GridEvents> events, QObject* parent);

  /// True while a listener is being called: the window may be in the middle of an event.
  bool Raising() const { return m_nRaising > 0; }
  void Raise(platform::Signal<> GridEvents::*event);
  /// The rows are others, or stand otherwise.
  void Exchanged();
  /// Rows were edited: soon tells of a current cell that takes values since, or none any more.
  void Edited() { m_edited.start(); }
  /// Tells nobody anything any more.
  void Abandon();

 private:
  bool TakesValues() const;

  RowView& m_rows;
  std::shared_ptr<GridEvents> m_events;
  QTimer m_edited;
  bool m_bToldOfCurrent = false;
  bool m_bToldOfSelection = false;
  bool m_bToldOfValues = false;  ///< the current cell took values when it was told of
  int m_nRaising = 0;
};

}  // namespace orvane::controls
