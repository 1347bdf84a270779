#include "trend/plot_hands.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "trend/trend_plot.h"

namespace orvane::trend {

namespace {

constexpr double kZoomStep = 0.8;
constexpr double kPanStep = 0.1;
constexpr double kWheelStep = 120.0;

}  // namespace

// ---- keys

bool PlotHands::Press(const QKeyEvent& event) {
  return PressMarkKey(event) || PressValueKey(event) || PressTimeKey(event);
}

bool PlotHands::PressTimeKey(const QKeyEvent& event) {
  const QCPRange times = m_plot.Times();
  const auto cursor = m_plot.Cursor();
  const double centre = cursor && times.contains(*cursor) ? *cursor : times.center();
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool bRight = event.key() == Qt::Key_Right;
      if (event.modifiers() & Qt::ControlModifier) {
        m_plot.Pan(bRight ? kPanStep : -kPanStep);
      } else {
        m_plot.StepCursor(bRight);
      }
      return true;
    }
    case Qt::Key_PageUp:
      m_plot.Pan(-1);
      return true;
    case Qt::Key_PageDown:
      m_plot.Pan(1);
      return true;
    case Qt::Key_Home:
      m_plot.Cursor(times.lower);
      return true;
    case Qt::Key_End:
      m_plot.Cursor(times.upper);
      return true;
    case Qt::Key_Plus:
    case Qt::Key_Up:
      m_plot.Zoom(kZoomStep, centre);
      return true;
    case Qt::Key_Minus:
    case Qt::Key_Down:
      m_plot.Zoom(1 / kZoomStep, centre);
      return true;
    case Qt::Key_0:
      m_plot.ShowAll();
      return true;
    default:
      return false;
  }
}

bool PlotHands::PressValueKey(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers();
  const bool bUp = event.key() == Qt::Key_Up;
  if (bUp || event.key() == Qt::Key_Down) {
    if (modifiers & Qt::ControlModifier) {
      m_values.Pan(bUp ? kPanStep : -kPanStep);
    } else if (modifiers & Qt::ShiftModifier) {
      m_values.Zoom(bUp ? kZoomStep : 1 / kZoomStep);
    } else {
      return false;
    }
  } else if (event.key() == Qt::Key_V && !(modifiers & ~Qt::ShiftModifier)) {
    m_values.LetFit();
  } else {
    return false;
  }
  m_plot.ShowValues();
  return true;
}

bool PlotHands::PressMarkKey(const QKeyEvent& event) {
  const int nKey = event.key();
  const bool bRight = nKey == Qt::Key_Right || nKey == Qt::Key_End;
  const bool bToEnd = nKey == Qt::Key_Home || nKey == Qt::Key_End;
  if (bToEnd || bRight || nKey == Qt::Key_Left) {
    if (event.modifiers() != Qt::ShiftModifier) return false;
    const auto before = m_plot.Cursor();
    if (before) m_plot.MarkFrom(*before, false);
    if (bToEnd) {
      m_plot.Cursor(bRight ? m_plot.Times().upper : m_plot.Times().lower);
    } else {
      m_plot.StepCursor(bRight);
    }
    const auto cursor = m_plot.Cursor();
    if (!cursor) return true;
    if (!before) m_plot.MarkFrom(*cursor, true);
    m_plot.MarkTo(*cursor);
    m_plot.TellOfMark();
    return true;
  }
  const auto marked = m_plot.Marked();
  if (!marked) return false;
  if (nKey == Qt::Key_Escape) {
    m_plot.Mark(std::nullopt);
    m_plot.TellOfMark();
    return true;
  }
  if (nKey != Qt::Key_Return && nKey != Qt::Key_Enter) return false;
  m_plot.Times(*marked);
  return true;
}

// ---- mouse

void PlotHands::Wheel(const QWheelEvent& event) {
  const QPoint delta = event.angleDelta();
  if (std::abs(delta.x()) > std::abs(delta.y()) || (event.modifiers() & Qt::ShiftModifier)) {
    const int nSteps = delta.x() != 0 ? delta.x() : delta.y();
    return m_plot.Pan(-kPanStep * nSteps / kWheelStep);
  }
  if (delta.y() == 0) return;
  const double factor = std::pow(kZoomStep, delta.y() / kWheelStep);
  QCPAxis* axis = m_values.At(event.position().toPoint());
  if (axis || (event.modifiers() & Qt::ControlModifier)) {
    m_values.Zoom(factor, axis, static_cast<int>(event.position().y()));
    return m_plot.ShowValues();
  }
  m_plot.Zoom(factor, m_plot.xAxis->pixelToCoord(event.position().x()));
}

void PlotHands::CursorTo(QPoint pixel) {
  m_plot.Cursor(m_plot.TimeAtPixel(pixel.x()));
}

void PlotHands::Begin(const QMouseEvent& event) {
  m_dragged = event.pos();
  m_draggedAxis = m_values.At(event.pos());
  if (m_draggedAxis) {
    m_drag = Drag::Values;
    return;
  }
  m_drag = event.modifiers() & Qt::ShiftModifier ? Drag::Mark : Drag::Times;
  CursorTo(event.pos());
  if (m_drag == Drag::Mark) m_plot.MarkFrom(*m_plot.Cursor(), true);
}

void PlotHands::Move(const QMouseEvent& event) {
  const Drag drag = event.buttons() & Qt::LeftButton ? m_drag : Drag::None;
  if (drag == Drag::Mark) {
    CursorTo(event.pos());
    m_plot.MarkTo(*m_plot.Cursor());
  } else if (drag == Drag::Values) {
    const int nHeight = std::max(1, m_plot.axisRect()->height());
    m_values.Pan(static_cast<double>(event.pos().y() - m_dragged.y()) / nHeight, m_draggedAxis);
    m_dragged = event.pos();
    m_plot.ShowValues();
  } else if (drag == Drag::Times) {
    const double from = m_plot.xAxis->pixelToCoord(m_dragged.x());
    const double to = m_plot.xAxis->pixelToCoord(event.pos().x());
    m_dragged = event.pos();
    const QCPRange range = m_plot.Times();
    if (from != to) m_plot.Times({range.lower + from - to, range.upper + from - to});
  } else if (m_plot.axisRect()->rect().contains(event.pos())) {
    CursorTo(event.pos());
  }
}

void PlotHands::End() {
  const bool bMarked = std::exchange(m_drag, Drag::None) == Drag::Mark && m_plot.Marked();
  m_draggedAxis = nullptr;
  if (bMarked) m_plot.TellOfMark();
}

}  // namespace orvane::trend
