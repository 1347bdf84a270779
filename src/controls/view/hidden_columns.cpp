#include "controls/view/hidden_columns.h"

#include <QMenu>
#include <QStyle>

#include "controls/view/header_view.h"
#include "controls/view/row_view.h"

namespace orvane::controls {

HiddenColumns::HiddenColumns(RowView& rows) : m_rows(rows) {
  setObjectName("hiddenColumns");
  setAutoRaise(true);
  setFocusPolicy(Qt::TabFocus);
  setPopupMode(InstantPopup);
  setToolTip("Shows them again");
  setAccessibleDescription(toolTip());
  auto* menu = new QMenu(this);
  connect(menu, &QMenu::aboutToShow, this, [this] { FillMenu(); });
  setMenu(menu);
  hide();
  m_counting.setSingleShot(true);
  m_counting.callOnTimeout(this, [this] { Count(); });
  const auto count = [this] { m_counting.start(0); };
  const HeaderView& names = rows.Names();
  connect(&names, &QHeaderView::sectionResized, this, count);
  connect(&names, &QHeaderView::sectionCountChanged, this, count);
  connect(&rows.Model(), &QAbstractItemModel::modelReset, this, count);
}

QSize HiddenColumns::sizeHint() const {
  // The toolkit draws the arrow into the margin behind the text, which stands in the middle.
  const int nArrow = style()->pixelMetric(QStyle::PM_MenuButtonIndicator, nullptr, this);
  return QToolButton::sizeHint() + QSize(2 * nArrow, 0);
}

void HiddenColumns::Count() {
  const auto nHidden = m_rows.Names().hiddenSectionCount();
  setText(nHidden == 1 ? QStringLiteral("1 column hidden")
                       : QStringLiteral("%L1 columns hidden").arg(nHidden));
  setAccessibleName(text());
  setVisible(nHidden > 0);
}

void HiddenColumns::FillMenu() {
  menu()->clear();
  menu()->addAction("Show &All", [this] {
    m_rows.HiddenColumns(std::vector<bool>(m_rows.HiddenColumns().size()));
  });
  menu()->addSeparator();
  const std::vector<bool> hidden = m_rows.HiddenColumns();
  int nNamed = 0;
  for (std::size_t n = 0; n < hidden.size() && nNamed < kMostNamed; ++n) {
    if (!hidden[n]) continue;
    ++nNamed;
    const auto nColumn = static_cast<int>(n);
    QString sName = m_rows.Model().ColumnName(nColumn);
    menu()->addAction(sName.replace(u'&', QStringLiteral("&&")), [this, nColumn] {
      m_rows.Reveal(nColumn);
      m_rows.Names().viewport()->update();
      m_rows.ShowColumn(nColumn);
    });
  }
  if (nNamed < m_rows.Names().hiddenSectionCount()) {
    menu()->addSeparator();
    menu()
        ->addAction(QStringLiteral("%L1 more: Columns (Ctrl+Shift+K)")
                        .arg(m_rows.Names().hiddenSectionCount() - nNamed))
        ->setEnabled(false);
  }
}

}  // namespace orvane::controls
