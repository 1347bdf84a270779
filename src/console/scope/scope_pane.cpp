#include "console/scope/scope_pane.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QTransform>
#include <algorithm>

#include "console/look/contrast.h"
#include "console/look/roomy_rows.h"

namespace orvane::console {

ScopePane::ScopePane(QWidget* parent) : QTreeView(parent) {
  setObjectName("scopePane");
  setAccessibleName(tr("Scope"));
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setItemDelegate(new RoomyRows(this));
  setIndentation(18);
  setIconSize({16, 16});
  setFrameShape(QFrame::NoFrame);
  // A long name is scrolled to, not cut; the mark of the selected item spans the pane.
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setStretchLastSection(false);
  setTextElideMode(Qt::ElideNone);
  connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
    if (!m_bFollowing) RequestExpansion(index);
  });
  m_rest.setSingleShot(true);
  connect(&m_rest, &QTimer::timeout, this, [this] {
    if (QApplication::activePopupWidget() || QApplication::activeModalWidget()) {
      RequestSelectedLater();
    } else {
      RequestSelected();
    }
  });
  connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
    if (!m_bFollowing) SelectIfHidden(index);
  });
}

ScopeTreeItemPtr ScopePane::Marked() const {
  return m_tree ? m_tree->ItemAt(currentIndex()) : nullptr;
}

void ScopePane::ShowTree(ScopeTree* tree) {
  const QScopedValueRollback follow(m_bFollowing, true);
  m_tree = tree;
  setModel(tree);
}

void ScopePane::ShowSelected(const ScopeTreeItemPtr& item) {
  if (!m_tree || !item || item->IsRemoved()) return;
  const QScopedValueRollback follow(m_bFollowing, true);
  m_rest.stop();
  const auto index = m_tree->IndexOf(*item);
  for (auto above = index.parent(); above.isValid(); above = above.parent()) expand(above);
  setCurrentIndex(index);
  scrollTo(index);
}

void ScopePane::ShowExpanded(const ScopeTreeItemPtr& item) {
  if (!m_tree || !item || item->IsRemoved()) return;
  const QScopedValueRollback follow(m_bFollowing, true);
  expand(m_tree->IndexOf(*item));
}

void ScopePane::ShowCollapsed(const ScopeTreeItemPtr& item) {
  if (!m_tree || !item || item->IsRemoved()) return;
  const QScopedValueRollback follow(m_bFollowing, true);
  collapse(m_tree->IndexOf(*item));
}

void ScopePane::RequestExpansion(const QModelIndex& index) {
  const auto item = m_tree ? m_tree->ItemAt(index) : nullptr;
  if (!item || item->State() == NodeState::Loaded || item->State() == NodeState::Loading) return;
  QMetaObject::invokeMethod(
      this, [this, item] { emit ExpandRequested(item); }, Qt::QueuedConnection);
}

void ScopePane::SelectIfHidden(const QModelIndex& collapsed) {
  for (auto above = currentIndex().parent(); above.isValid(); above = above.parent()) {
    if (above == collapsed) {
      setCurrentIndex(collapsed);
      return;
    }
  }
}

void ScopePane::RequestSelectedLater() {
  // As long as the letters typed count as one word.
  m_rest.start(QApplication::keyboardInputInterval());
}

void ScopePane::RequestSelected() {
  m_rest.stop();
  if (m_bSelectPosted) return;
  m_bSelectPosted = true;
  // Of the items that the selection runs over in one go, only the last is shown.
  QMetaObject::invokeMethod(
      this,
      [this] {
        m_bSelectPosted = false;
        if (const auto item = Marked()) emit SelectRequested(item);
      },
      Qt::QueuedConnection);
}

int ScopePane::sizeHintForColumn(int iColumn) const {
  return qMax(QTreeView::sizeHintForColumn(iColumn), viewport()->width());
}

void ScopePane::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  resizeColumnToContents(0);
}

void ScopePane::keyboardSearch(const QString& sTyped) {
  const QScopedValueRollback passing(m_bPassing, true);
  QTreeView::keyboardSearch(sTyped);
  if (m_rest.isActive()) RequestSelectedLater();
}

void ScopePane::keyPressEvent(QKeyEvent* event) {
  // A key that is held down passes over what it would stop at when pressed once.
  const QScopedValueRollback passing(m_bPassing, m_bPassing || event->isAutoRepeat());
  const auto index = currentIndex();
  const bool bHasRows = model() && model()->rowCount(index) > 0;
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (index.isValid()) {
        // An item without an expand mark is listed too, when it has not been yet.
        if (bHasRows) {
          setExpanded(index, !isExpanded(index));
        } else {
          RequestExpansion(index);
        }
        event->accept();
        return;
      }
      break;
    case Qt::Key_Right:
    case Qt::Key_Plus:
    case Qt::Key_Asterisk:
      // The star would open everything beneath, each of it a question to a server.
      if (index.isValid() && (!bHasRows || event->key() == Qt::Key_Asterisk)) {
        if (bHasRows) {
          expand(index);
        } else {
          RequestExpansion(index);
        }
        event->accept();
        return;
      }
      break;
    default:
      break;
  }
  QTreeView::keyPressEvent(event);
}

void ScopePane::mousePressEvent(QMouseEvent* event) {
  // The right button is for the menu, which is about the item under the pointer, selected or not.
  if (event->button() == Qt::RightButton) {
    event->accept();
    return;
  }
  QTreeView::mousePressEvent(event);
}

void ScopePane::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::RightButton) {
    event->accept();
    return;
  }
  const auto index = indexAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && index.isValid() && model()->rowCount(index) == 0 &&
      visualRect(index).contains(event->position().toPoint())) {
    RequestExpansion(index);
    event->accept();
    return;
  }
  QTreeView::mouseDoubleClickEvent(event);
}

void ScopePane::contextMenuEvent(QContextMenuEvent* event) {
  auto index = currentIndex();
  auto position = event->globalPos();
  if (event->reason() == QContextMenuEvent::Mouse) {
    index = indexAt(event->pos());
    if (!index.isValid()) return;
  } else if (index.isValid()) {
    position = viewport()->mapToGlobal(visualRect(index).bottomLeft());
  }
  const auto item = m_tree ? m_tree->ItemAt(index) : nullptr;
  if (!item) return;
  event->accept();
  m_menuOf = index;
  viewport()->update();
  QMetaObject::invokeMethod(
      this, [this, item, position] { emit MenuRequested(item, position); }, Qt::QueuedConnection);
}

void ScopePane::MenuClosed() {
  m_menuOf = QPersistentModelIndex();
  viewport()->update();
}

void ScopePane::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  if (m_bFollowing || !current.isValid()) return;
  if (m_bPassing) {
    RequestSelectedLater();
    emit MarkMoved();
  } else {
    RequestSelected();
  }
}

void ScopePane::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  // The tree view updates the items, and leaves out what is left of them.
  viewport()->update();
}

void ScopePane::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
  if (!model() || !model()->hasChildren(index)) return;
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const auto group =
      option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
  auto color = palette().color(group, QPalette::Text);
  if (selectionModel() && selectionModel()->isSelected(index)) {
    const auto ground = palette().color(group, QPalette::Highlight);
    color = palette().color(group, QPalette::HighlightedText);
    if (Contrast(color, ground) < kLeastContrast) {
      color = Contrast(Qt::white, ground) > Contrast(Qt::black, ground) ? Qt::white : Qt::black;
    }
  }
  const qreal dHalf = std::max(4.0, fontMetrics().height() / 4.0);
  const QPointF center(
      isRightToLeft() ? rect.left() + indentation() / 2.0 : rect.right() + 1 - indentation() / 2.0,
      rect.top() + rect.height() / 2.0);
  QTransform place = QTransform::fromTranslate(center.x(), center.y());
  if (isExpanded(index)) {
    place.rotate(90);
  } else if (isRightToLeft()) {
    place.rotate(180);
  }
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(color);
  painter->drawPolygon(
      place.map(QPolygonF({{-dHalf / 2, -dHalf}, {dHalf / 2, 0}, {-dHalf / 2, dHalf}})));
  painter->restore();
}

void ScopePane::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  if (selectionModel() && selectionModel()->isSelected(index)) {
    const bool bActive = option.state.testFlag(QStyle::State_Active);
    const QRect row(0, option.rect.top(), viewport()->width(), option.rect.height());
    painter->fillRect(
        row, palette().brush(bActive ? QPalette::Active : QPalette::Inactive, QPalette::Highlight));
  }
  QTreeView::drawRow(painter, option, index);
  if (m_menuOf.isValid() && m_menuOf == index) {
    painter->setPen(palette().color(QPalette::Highlight));
    painter->drawRect(QRect(0, option.rect.top(), viewport()->width(), option.rect.height())
                          .adjusted(0, 0, -1, -1));
  }
}

}  // namespace orvane::console
