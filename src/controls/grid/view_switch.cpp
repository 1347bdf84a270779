#include "controls/grid/view_switch.h"

#include <QApplication>
#include <QShortcut>
#include <QToolButton>

#include "controls/grid/grid_trend.h"
#include "controls/view/row_form.h"
#include "controls/view/row_view.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

namespace {

constexpr QKeyCombination kTrendKeys = Qt::SHIFT | Qt::Key_F4;

}  // namespace

ViewSwitch::ViewSwitch(QWidget& window, RowView& rows, RowForm& form, GridTrend& trend,
                       StatusStrip& status)
    : QObject(&window), m_window(window), m_rows(rows), m_form(form), m_trend(trend) {
  m_asRows = AddButton(Look::Rows, "Rows", "asRows", "Shows the rows alone");
  m_asForm = AddButton(Look::Form, "Form", "asForm",
                       "Shows the current row as a form beside the rows (F4)");
  m_asTrend = AddButton(Look::Trend, "Trend", "asTrend",
                        "Shows the numbers of the rows over their times (Shift+F4)");
  status.AddSwitch({m_asRows, m_asForm, m_asTrend});
  AddKeys();
  m_form.OnShown([this] { Follow(); });
  m_trend.OnChanged([this] { Follow(); });
  Follow();
}

QToolButton* ViewSwitch::AddButton(Look look, const char* sText, const char* sName,
                                   const char* sTip) {
  // In no group: of a group's buttons Tab would reach the one that is chosen, and no other.
  auto* button = new QToolButton;
  button->setText(QString::fromLatin1(sText));
  button->setObjectName(sName);
  button->setToolTip(QString::fromLatin1(sTip));
  button->setAccessibleDescription(button->toolTip());
  button->setCheckable(true);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  connect(button, &QToolButton::clicked, this, [this, look] { Show(look); });
  return button;
}

void ViewSwitch::AddKeys() {
  const auto toggle = [this] { Show(Shown() == Look::Trend ? Look::Rows : Look::Trend); };
  m_rows.Commands().Add(
      {CommandGroup::Columns, "Show as &Trend", QKeySequence(kTrendKeys), toggle, {}, [this] {
         return m_trend.CanShow();
       }});
  auto* trend = new QShortcut(QKeySequence(kTrendKeys), &m_window);
  trend->setContext(Qt::WidgetWithChildrenShortcut);
  connect(trend, &QShortcut::activated, this, [this, toggle] {
    if (m_trend.CanShow()) toggle();
  });
  // The rows and the form have F4 themselves; the trend has none of the rows' keys.
  m_trend.OnFormKey([this] { Show(Look::Form); });
}

ViewSwitch::Look ViewSwitch::Shown() const {
  if (m_trend.IsShown()) return Look::Trend;
  return m_form.isHidden() ? Look::Rows : Look::Form;
}

void ViewSwitch::Show(Look look) {
  const auto* focus = qobject_cast<QToolButton*>(QApplication::focusWidget());
  const bool bByKeys = focus && (focus == m_asRows || focus == m_asForm || focus == m_asTrend);
  if (look != Look::Form && !m_form.isHidden()) m_form.Show(false);
  if (look == Look::Trend ? m_trend.CanShow() : m_trend.IsShown()) {
    m_trend.Show(look == Look::Trend);
  }
  if (look == Look::Form && m_form.isHidden()) m_form.Show(true);
  // Whoever came with the keys goes on in what he chose.
  if (bByKeys && look == Look::Rows) m_rows.setFocus();
  if (bByKeys && look == Look::Trend) m_trend.TakeKeys();
  Follow();
}

void ViewSwitch::Follow() {
  const Look shown = Shown();
  // Tab would end at a window whose keys go to something out of sight.
  QWidget* face = m_trend.Shown();
  m_window.setFocusProxy(face ? face : &m_rows);
  const bool bForm = m_rows.HasRows() || shown == Look::Form;
  m_asForm->setVisible(bForm);
  m_asTrend->setVisible(m_trend.CanShow());
  m_asRows->setVisible(bForm || m_trend.CanShow());
  m_asRows->setChecked(shown == Look::Rows);
  m_asForm->setChecked(shown == Look::Form);
  m_asTrend->setChecked(shown == Look::Trend);
}

}  // namespace orvane::controls
