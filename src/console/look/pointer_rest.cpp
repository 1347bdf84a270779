#include "console/look/pointer_rest.h"

#include <QApplication>

namespace orvane::console {

PointerRest::PointerRest() {
  while (const QCursor* const shape = QApplication::overrideCursor()) {
    m_shapes.push_back(*shape);
    QApplication::restoreOverrideCursor();
  }
}

PointerRest::~PointerRest() {
  for (; !m_shapes.empty(); m_shapes.pop_back()) {
    QApplication::setOverrideCursor(m_shapes.back());
  }
}

}  // namespace orvane::console
