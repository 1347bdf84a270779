#include "controls/grid/grid_teller.h"

#include <QItemSelectionModel>
#include <utility>

#include "controls/view/row_view.h"

namespace orvane::controls {

GridTeller::GridTeller(RowView& rows, std::shared_ptr<GridEvents> events, QObject* parent)
    : QObject(parent), m_rows(rows), m_events(std::move(events)) {
  m_edited.setSingleShot(true);
  m_edited.setInterval(0);
  connect(&m_edited, &QTimer::timeout, this, [this] {
    if (TakesValues() != m_bToldOfValues) Raise(&GridEvents::rowColChange);
  });
  connect(m_rows.selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
    m_bToldOfCurrent = m_rows.currentIndex().isValid();
    Raise(&GridEvents::rowColChange);
  });
  connect(m_rows.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    m_bToldOfSelection = m_rows.selectionModel()->hasSelection();
    Raise(&GridEvents::selChange);
  });
}

bool GridTeller::TakesValues() const {
  const QModelIndex current = m_rows.currentIndex();
  return current.isValid() && current.flags().testFlag(Qt::ItemIsEditable);
}

void GridTeller::Raise(platform::Signal<> GridEvents::*event) {
  const struct Count {
    explicit Count(int& nRaising) : n(nRaising) { ++n; }
    ~Count() { --n; }
    Count(const Count&) = delete;
    Count& operator=(const Count&) = delete;
    int& n;
  } count(m_nRaising);
  if (event == &GridEvents::rowColChange) m_bToldOfValues = TakesValues();
  const std::shared_ptr<GridEvents> events = m_events;
  (events.get()->*event).Raise();
}

void GridTeller::Exchanged() {
  const bool bCurrent = m_rows.currentIndex().isValid();
  const bool bSelection = m_rows.selectionModel()->hasSelection();
  const bool bTellCurrent = std::exchange(m_bToldOfCurrent, bCurrent) || bCurrent;
  const bool bTellSelection = std::exchange(m_bToldOfSelection, bSelection) || bSelection;
  if (bTellCurrent) Raise(&GridEvents::rowColChange);
  if (bTellSelection) Raise(&GridEvents::selChange);
}

void GridTeller::Abandon() {
  m_edited.stop();
  m_events = std::make_shared<GridEvents>();
}

}  // namespace orvane::controls
