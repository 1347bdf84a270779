// What keys and mouse do to the drawing of a trend: zoom, pan, mark times, move the cursor.
// Part of the plot, which gives it its events; user-interface thread.
#pragma once

#include <QPoint>
#include <cstdint>

class QCPAxis;
class QKeyEvent;
class QMouseEvent;
class QWheelEvent;

namespace orvane::trend {

class TrendPlot;
class ValueAxes;

class PlotHands {
 public:
  PlotHands(TrendPlot& plot, ValueAxes& values) : m_plot(plot), m_values(values) {}

  /// False for a key that does nothing here.
  bool Press(const QKeyEvent& event);
  void Wheel(const QWheelEvent& event);
  /// A drag of the times, of an axis or of the mark begins, goes on and ends.
  void Begin(const QMouseEvent& event);
  void Move(const QMouseEvent& event);
  void End();

 private:
  enum class Drag : std::uint8_t { None, Times, Values, Mark };

  bool PressValueKey(const QKeyEvent& event);
  bool PressMarkKey(const QKeyEvent& event);
  bool PressTimeKey(const QKeyEvent& event);
  void CursorTo(QPoint pixel);

  TrendPlot& m_plot;
  ValueAxes& m_values;
  Drag m_drag = Drag::None;
  QPoint m_dragged;
  QCPAxis* m_draggedAxis = nullptr;
};

}  // namespace orvane::trend
