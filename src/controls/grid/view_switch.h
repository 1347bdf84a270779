// How the rows of a grid are looked at: as rows, with a form of the current one beside them, or as
// a trend. The switch stands in the grid's strip, each of its buttons within reach of Tab; the menu
// of the rows and keys choose the same. Part of the grid's window; user-interface thread.
#pragma once

#include <QObject>
#include <cstdint>

class QToolButton;

namespace orvane::controls {

class GridTrend;
class RowForm;
class RowView;
class StatusStrip;

class ViewSwitch : public QObject {
 public:
  enum class Look : std::uint8_t { Rows, Form, Trend };

  /// Follows form and trend, whoever shows them. The keys are those of the window.
  ViewSwitch(QWidget& window, RowView& rows, RowForm& form, GridTrend& trend, StatusStrip& status);

  Look Shown() const;
  void Show(Look look);

 private:
  QToolButton* AddButton(Look look, const char* sText, const char* sName, const char* sTip);
  void AddKeys();
  /// The buttons as form and trend are, and as there are rows.
  void Follow();

  QWidget& m_window;
  RowView& m_rows;
  RowForm& m_form;
  GridTrend& m_trend;
  QToolButton* m_asRows;
  QToolButton* m_asForm;
  QToolButton* m_asTrend;
};

}  // namespace orvane::controls
