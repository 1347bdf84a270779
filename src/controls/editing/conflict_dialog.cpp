#include "controls/editing/conflict_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "controls/values/tip_text.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Value;

namespace {

enum Place { kName, kMine, kTheirs, kOriginal };

QLabel* AddText(QGridLayout& grid, int nRow, int nColumn, const QString& sText, bool bStrong) {
  auto* label = new QLabel(sText);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (bStrong) {
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
  }
  grid.addWidget(label, nRow, nColumn);
  return label;
}

}  // namespace

ConflictDialog::ConflictDialog(const RowConflict& conflict, const platform::Recordset& rs,
                               bool bDelete, const QString& sRow, const CellFormat& format,
                               QWidget* parent)
    : QDialog(parent), m_values(new QGridLayout) {
  setObjectName("conflict");
  setWindowTitle("Changed Meanwhile");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* sentence = new QLabel(QString::fromStdString(conflict.sSentence));
  sentence->setObjectName("sentence");
  sentence->setTextFormat(Qt::PlainText);
  sentence->setWordWrap(true);
  auto* which = new QLabel(sRow);
  which->setObjectName("which");
  which->setTextFormat(Qt::PlainText);
  which->setTextInteractionFlags(Qt::TextSelectableByMouse);
  which->setWordWrap(true);

  auto* page = new QWidget;
  page->setLayout(m_values);
  m_values->setHorizontalSpacing(18);
  m_values->setColumnStretch(kOriginal + 1, 1);
  AddText(*m_values, 0, kName, "Column", true);
  AddText(*m_values, 0, kMine, "Mine", true);
  AddText(*m_values, 0, kTheirs, "Theirs", true);
  AddText(*m_values, 0, kOriginal, "Original", true);
  const bool bChoose = !bDelete && !conflict.IsGone();
  auto* buttons = new QDialogButtonBox;
  const auto add = [&](const QString& sLabel, Answer answer) {
    auto* button = buttons->addButton(sLabel, QDialogButtonBox::ActionRole);
    connect(button, &QPushButton::clicked, this, [this, answer] { done(answer); });
    return button;
  };
  if (conflict.IsGone()) {
    m_store = add(bDelete ? "&Done" : "&Discard Mine", kSettle);
    if (!bDelete) m_addAsNew = add("Add as &New Row", kAddAsNew);
  } else if (bDelete) {
    m_store = add("&Keep the Row", kSettle);
    add("&Delete All the Same", kDelete);
  } else {
    m_store = add("&Store", kSettle);
  }
  m_store->setObjectName("settle");
  buttons->addButton("&Later", QDialogButtonBox::RejectRole)->setDefault(true);
  for (const ColumnConflict& column : conflict.columns) {
    const QString sName = QString::fromStdString(rs.FieldAt(column.column).Name());
    if (bChoose) {
      AddColumn(column, sName, format);
    } else {
      const int nRow = m_values->rowCount();
      AddText(*m_values, nRow, kName, sName, false);
      AddText(*m_values, nRow, kMine, bDelete ? "deleted" : Brief(format.Shown(column.vtMine)),
              false);
      AddText(*m_values, nRow, kTheirs,
              conflict.IsGone() ? "not there" : Brief(format.Shown(column.vtTheirs)), false);
      AddText(*m_values, nRow, kOriginal, Brief(format.Shown(column.vtOriginal)), false);
    }
  }
  m_values->setRowStretch(m_values->rowCount(), 1);

  auto* area = new QScrollArea;
  area->setWidgetResizable(true);
  area->setFrameShape(QFrame::NoFrame);
  area->setFocusPolicy(Qt::NoFocus);  // it follows the choices in it
  area->setWidget(page);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(which);
  layout->addWidget(sentence);
  layout->addWidget(area, 1);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  const int iLine = fontMetrics().height();
  resize(fontMetrics().averageCharWidth() * 80,
         iLine * std::min(26, 10 + 2 * m_values->rowCount()));
  UpdateStore();
}

void ConflictDialog::AddColumn(const ColumnConflict& column, const QString& sName,
                               const CellFormat& format) {
  const int nRow = m_values->rowCount();
  AddText(*m_values, nRow, kName, sName, false);
  auto* group = new QButtonGroup(this);
  m_choices[column.column] = group;
  AddChoice(*group, kMine, column.vtMine, sName + ", mine", format);
  AddChoice(*group, kTheirs, column.vtTheirs, sName + ", theirs", format);
  AddText(*m_values, nRow, kOriginal, Brief(format.Shown(column.vtOriginal)), false);
  // Where only one of us changed the value there is little to ask.
  if (!column.bTheirs) group->button(kMine)->setChecked(true);
  if (!column.bMine) group->button(kTheirs)->setChecked(true);
  connect(group, &QButtonGroup::idToggled, this, [this] { UpdateStore(); });
}

void ConflictDialog::AddChoice(QButtonGroup& group, int nColumn, const Value& vtValue,
                               const QString& sSpoken, const CellFormat& format) {
  QString sLabel = Brief(format.Shown(vtValue));
  auto* button = new QRadioButton(sLabel.replace(u'&', QStringLiteral("&&")));
  button->setAccessibleName(sSpoken);
  button->setToolTip(format.Whole(vtValue).left(1000).toHtmlEscaped());
  group.addButton(button, nColumn);
  // The name has begun the row.
  m_values->addWidget(button, m_values->rowCount() - 1, nColumn);
}

void ConflictDialog::UpdateStore() {
  m_store->setEnabled(std::ranges::all_of(
      m_choices, [](const auto& choice) { return choice.second->checkedId() >= 0; }));
}

void ConflictDialog::OfferNewRow(bool bOffered) {
  if (m_addAsNew != nullptr) m_addAsNew->setVisible(bOffered);
}

std::vector<ColumnIndex> ConflictDialog::Mine() const {
  std::vector<ColumnIndex> mine;
  for (const auto& [column, group] : m_choices) {
    if (group->checkedId() == kMine) mine.push_back(column);
  }
  return mine;
}

}  // namespace orvane::controls
