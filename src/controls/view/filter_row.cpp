#include "controls/view/filter_row.h"

#include <QKeyEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>
#include <chrono>

#include "controls/view/header_view.h"
#include "platform/failure.h"

namespace orvane::controls {

namespace {

constexpr std::chrono::milliseconds kTypingPause(300);

}  // namespace

FilterRow::FilterRow(RowView& rows) : QWidget(&rows), m_rows(rows) {
  setObjectName("filterRow");
  setAccessibleName("Filter of the rows here");
  m_pause.setSingleShot(true);
  m_pause.setInterval(kTypingPause);
  connect(&m_pause, &QTimer::timeout, this, [this] { Apply(); });
  const auto layOut = [this] { LayOut(); };
  connect(&rows.Names(), &QHeaderView::sectionResized, this, layOut);
  connect(&rows.Names(), &QHeaderView::sectionMoved, this, layOut);
  connect(&rows.Names(), &QHeaderView::geometriesChanged, this, layOut);
  connect(rows.horizontalScrollBar(), &QScrollBar::valueChanged, this, layOut);
  connect(rows.model(), &QAbstractItemModel::modelReset, this, layOut);
  hide();
}

QSize FilterRow::sizeHint() const {
  return {0, fontMetrics().height() + 10};
}

QLineEdit& FilterRow::Box(int nColumn) {
  QLineEdit*& box = m_boxes[nColumn];
  if (!box) {
    box = new QLineEdit(this);
    box->setClearButtonEnabled(true);
    box->installEventFilter(this);
    connect(box, &QLineEdit::textEdited, this, [this] { m_pause.start(); });
    connect(box, &QLineEdit::returnPressed, this, [this] { Apply(); });
    box->show();
  }
  return *box;
}

void FilterRow::LayOut() {
  const HeaderView& names = m_rows.Names();
  for (auto& [nColumn, box] : m_boxes) {
    if (nColumn >= names.count()) box->hide();
  }
  for (int nColumn = 0; nColumn < names.count(); ++nColumn) {
    const QRect room(names.LeftOf(nColumn), 0, names.sectionSize(nColumn) - 1, height() - 1);
    const bool bInSight = !names.isSectionHidden(nColumn) && room.intersects(rect());
    // A box is made when its column comes into sight: a result may have thousands of columns.
    if (!bInSight && !m_boxes.contains(nColumn)) continue;
    QLineEdit& box = Box(nColumn);
    box.setGeometry(room);
    box.setVisible(!names.isSectionHidden(nColumn));
    // One that is scrolled goes beneath those that are held.
    if (names.IsHeld(nColumn)) box.raise();
    const QString sName = m_rows.Model().ColumnName(nColumn);
    box.setAccessibleName(QStringLiteral("Filter of ") + sName);
    box.setPlaceholderText(QStringLiteral("contains, =, <, a..b, null, \"\""));
  }
}

void FilterRow::ShowFilters() {
  for (auto& [nColumn, box] : m_boxes) {
    const QSignalBlocker quiet(box);
    if (!box->hasFocus()) box->clear();
  }
  for (const ColumnFilter& filter : m_rows.Arranged().filters) {
    QLineEdit& box = Box(filter.Column());
    if (!box.hasFocus()) box.setText(filter.Text());
  }
  LayOut();
}

void FilterRow::Apply() {
  m_pause.stop();
  std::vector<ColumnFilter> filters;
  QString sRefusal;
  const auto& rs = m_rows.Model().Recordset();
  for (auto& [nColumn, box] : m_boxes) {
    box->setToolTip({});
    if (!rs || nColumn >= rs->FieldCount() || box->text().isEmpty()) continue;
    try {
      // What was filtered by and not typed over is exact, and its text may not be.
      const auto& present = m_rows.Arranged().filters;
      const auto same = std::ranges::find_if(
          present, [nColumn = nColumn, sText = box->text()](const ColumnFilter& filter) {
            return filter.Column() == nColumn && filter.Text() == sText;
          });
      filters.push_back(same != present.end()
                            ? *same
                            : ColumnFilter::Read(box->text(), nColumn,
                                                 ColumnTakes(rs->FieldAt(nColumn)),
                                                 m_rows.Model().Format()));
    } catch (const platform::Failure& failure) {
      box->setToolTip(QString::fromStdString(failure.Description()));
      sRefusal = m_rows.Model().ColumnName(nColumn) + QStringLiteral(": ") + box->toolTip();
    }
  }
  m_rows.Filter(std::move(filters));
  if (m_refused) m_refused(sRefusal);
}

bool FilterRow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Escape && m_rows.StopArranging()) return true;
    if (key->key() == Qt::Key_Escape || key->key() == Qt::Key_Down) {
      m_rows.setFocus(Qt::OtherFocusReason);
      return true;
    }
  }
  if (event->type() == QEvent::FocusIn) {
    // Whoever comes by Tab sees the box he types in.
    for (const auto& [nColumn, box] : m_boxes) {
      if (box == watched) m_rows.ShowColumn(nColumn);
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace orvane::controls
