#include "controls/view/kept_columns.h"

#include <QScopedValueRollback>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "controls/view/header_view.h"

namespace orvane::controls {

using platform::Text;

KeptColumns::KeptColumns(HeaderView& names, QObject* parent) : QObject(parent), m_names(names) {
  connect(&names, &QHeaderView::sectionResized, this,
          [this](int nColumn, int /*nOld*/, int nNew) { Resized(nColumn, nNew); });
}

void KeptColumns::Resized(int nColumn, int nWidth) {
  const auto n = static_cast<std::size_t>(nColumn);
  // A hidden column has no width for the toolkit.
  if (n >= m_widths.size() || nWidth <= 0) return;
  m_widths[n].nPixels = nWidth;
  if (!m_bByItself) m_widths[n].bChosen = true;
}

int KeptColumns::WidthOf(int nColumn) const {
  const auto n = static_cast<std::size_t>(nColumn);
  const bool bHidden = m_names.isSectionHidden(nColumn) && n < m_widths.size();
  return bHidden ? m_widths[n].nPixels : m_names.sectionSize(nColumn);
}

// ---- what is kept

std::vector<LaidOutColumn> KeptColumns::Present() const {
  bool bMoved = false;
  for (int n = 0; n < m_names.count(); ++n) bMoved = bMoved || m_names.visualIndex(n) != n;
  std::vector<LaidOutColumn> columns;
  for (std::size_t n = 0; n < m_fetched.size(); ++n) {
    const auto nColumn = static_cast<int>(n);
    columns.push_back({m_fetched[n], m_widths[n].bChosen ? m_widths[n].nPixels : 0,
                       m_names.isSectionHidden(nColumn),
                       bMoved ? m_names.visualIndex(nColumn) : -1});
  }
  return columns;
}

ColumnLayout KeptColumns::Layout() const {
  const bool bShown =
      !m_fetched.empty() && m_fetched.size() == static_cast<std::size_t>(m_names.count());
  return bShown ? WithColumns(m_layout, Present()) : m_layout;
}

void KeptColumns::Show(std::vector<Text> names, const std::function<void()>& fit) {
  const QScopedValueRollback byItself(m_bByItself, true);
  const FittedLayout fitted = LayoutFor(m_layout, names);
  m_fetched = std::move(names);
  m_widths.assign(m_fetched.size(), {});
  for (int n = 0; n < m_names.count(); ++n) m_names.setSectionHidden(n, false);
  for (int n = 0; n < m_names.count(); ++n) {
    m_widths[static_cast<std::size_t>(n)].nPixels = m_names.sectionSize(n);
  }
  fit();
  for (int n = 0; n < m_names.count(); ++n) {
    const LaidOutColumn& column = fitted.columns[static_cast<std::size_t>(n)];
    m_names.moveSection(m_names.visualIndex(fitted.order[static_cast<std::size_t>(n)]), n);
    if (column.nWidth <= 0) continue;
    m_names.resizeSection(n, column.nWidth);
    m_widths[static_cast<std::size_t>(n)].bChosen = true;
  }
  for (int n = 0; n < m_names.count(); ++n) {
    m_names.setSectionHidden(n, fitted.columns[static_cast<std::size_t>(n)].bHidden);
  }
  m_names.Hold(m_layout.nFrozen);
}

// ---- changes

void KeptColumns::Hide(const std::vector<bool>& hidden) {
  if (std::ranges::find(hidden, false) == hidden.end()) return;
  const QScopedValueRollback byItself(m_bByItself, true);
  for (int n = 0; n < m_names.count(); ++n) {
    m_names.setSectionHidden(n, hidden[static_cast<std::size_t>(n)]);
  }
}

void KeptColumns::Move(int nColumn, int nStep) {
  const std::vector<int> shown = m_names.Shown();
  const auto at = std::ranges::find(shown, nColumn);
  if (at == shown.end()) return;
  const auto nTo = at - shown.begin() + nStep;
  if (nTo < 0 || nTo >= std::ssize(shown)) return;
  m_names.moveSection(m_names.visualIndex(nColumn),
                      m_names.visualIndex(shown[static_cast<std::size_t>(nTo)]));
}

void KeptColumns::HoldUpTo(int nColumn) {
  m_layout.nFrozen =
      std::min(nColumn < 0 ? 0 : m_names.visualIndex(nColumn) + 1, ColumnLayout::kMostFrozen);
  m_names.Hold(m_layout.nFrozen);
}

bool KeptColumns::MayGrow(int nColumn, int nTo) const {
  const auto n = static_cast<std::size_t>(nColumn);
  return n < m_widths.size() && !m_widths[n].bChosen && nColumn < m_names.count() &&
         !m_names.isSectionHidden(nColumn) && nTo > m_names.sectionSize(nColumn);
}

void KeptColumns::Grow(int nColumn, int nWidth) {
  if (m_wanted.empty()) QTimer::singleShot(0, this, [this] { GrowNow(); });
  m_wanted[nColumn] = std::max(m_wanted[nColumn], nWidth);
}

void KeptColumns::GrowNow() {
  const QScopedValueRollback byItself(m_bByItself, true);
  for (const auto& [nColumn, nWidth] : std::exchange(m_wanted, {})) {
    if (MayGrow(nColumn, nWidth)) m_names.resizeSection(nColumn, nWidth);
  }
}

}  // namespace orvane::controls
