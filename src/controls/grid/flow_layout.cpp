#include "controls/grid/flow_layout.h"

#include <algorithm>

namespace orvane::controls {

FlowLayout::~FlowLayout() = default;

QLayoutItem* FlowLayout::itemAt(int n) const {
  return n >= 0 && n < count() ? m_items[static_cast<std::size_t>(n)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int n) {
  if (!itemAt(n)) return nullptr;
  QLayoutItem* item = m_items[static_cast<std::size_t>(n)].release();
  m_items.erase(m_items.begin() + n);
  return item;
}

void FlowLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  Lay(rect, true);
}

QSize FlowLayout::sizeHint() const {
  QSize size;
  for (const auto& item : m_items) {
    if (item->isEmpty()) continue;
    const int nBefore = size.isNull() ? 0 : size.width() + spacing();
    size = {nBefore + item->sizeHint().width(), std::max(size.height(), item->sizeHint().height())};
  }
  return size.grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const auto& item : m_items) {
    if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
  }
  return size.grownBy(contentsMargins());
}

int FlowLayout::Lay(const QRect& rect, bool bMove) const {
  const QRect inner = rect.marginsRemoved(contentsMargins());
  int nX = inner.x();
  int nY = inner.y();
  int nLine = 0;
  for (const auto& item : m_items) {
    if (item->isEmpty()) continue;
    // One that is wider than the line has it for itself, as wide as that is.
    const int nLeast = item->minimumSize().width();
    const QSize size(std::clamp(item->sizeHint().width(), nLeast, std::max(nLeast, inner.width())),
                     item->sizeHint().height());
    if (nX > inner.x() && nX + size.width() > inner.x() + inner.width()) {
      nX = inner.x();
      nY += nLine + spacing();
      nLine = 0;
    }
    if (bMove) item->setGeometry({QPoint(nX, nY), size});
    nX += size.width() + spacing();
    nLine = std::max(nLine, size.height());
  }
  return nY + nLine - rect.y() + contentsMargins().bottom();
}

}  // namespace orvane::controls
