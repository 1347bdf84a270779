#include "controls/grid/export_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "controls/view/status_strip.h"
#include "widgets/drop_down_box.h"

namespace orvane::controls {

using exports::Form;

namespace {

QRadioButton* Choose(QVBoxLayout& layout, const QString& sText, const char* sName, bool bOffered) {
  auto* button = new QRadioButton(sText);
  button->setObjectName(QLatin1String(sName));
  button->setEnabled(bOffered);
  layout.addWidget(button);
  return button;
}

void Select(QComboBox& box, int nData) {
  box.setCurrentIndex(qMax(0, box.findData(nData)));
}

}  // namespace

ExportDialog::ExportDialog(QWidget* parent, const ExportOffer& offer, const ExportChoice& before)
    : QDialog(parent) {
  setWindowTitle("Export Rows");
  auto* rows = new QGroupBox("Rows");
  auto* choices = new QVBoxLayout(rows);
  m_shown = Choose(*choices, "The rows &shown (" + RowsText(offer.shown) + ")", "m_optShown", true);
  m_selected = Choose(*choices, "The se&lected rows (" + RowsText(offer.selected) + ")",
                      "m_optSelected", offer.selected > 0);
  m_all = Choose(*choices, "&All rows, fetched anew without the row limit", "m_optAll", offer.bAll);
  const bool bSelected = before.rows == ExportRows::Selected && m_selected->isEnabled();
  const bool bAll = before.rows == ExportRows::All && m_all->isEnabled();
  (bSelected ? m_selected : bAll ? m_all : m_shown)->setChecked(true);

  m_form = new widgets::DropDownBox;
  m_form->setObjectName("m_cboForm");
  m_form->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  m_form->addItem("CSV", static_cast<int>(Form::Csv));
  m_form->addItem("JSON Lines", static_cast<int>(Form::JsonLines));
  m_form->addItem("SQL INSERT", static_cast<int>(Form::Sql));
  Select(*m_form, static_cast<int>(before.writer.form));
  m_separator = new widgets::DropDownBox;
  m_separator->setObjectName("m_cboSeparator");
  m_separator->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  m_separator->addItem("Comma", ',');
  m_separator->addItem("Semicolon", ';');
  m_separator->addItem("Tab", '\t');
  Select(*m_separator, before.writer.cSeparator);
  m_names = new QCheckBox("Column &names in the first line");
  m_names->setObjectName("m_chkNames");
  m_names->setChecked(before.writer.bNames);

  auto* form = new QFormLayout;
  form->addRow("&Format:", m_form);
  form->addRow("Se&parator:", m_separator);
  form->addRow(QString(), m_names);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  buttons->button(QDialogButtonBox::Ok)->setText("&Export\u2026");
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(rows);
  layout->addLayout(form);
  layout->addStretch();
  layout->addWidget(buttons);

  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_form, &QComboBox::currentIndexChanged, this, [this] { FollowForm(); });
  FollowForm();
}

ExportChoice ExportDialog::Choice() const {
  ExportChoice choice;
  if (m_selected->isChecked()) choice.rows = ExportRows::Selected;
  if (m_all->isChecked()) choice.rows = ExportRows::All;
  choice.writer.form = static_cast<Form>(m_form->currentData().toInt());
  choice.writer.cSeparator = static_cast<char>(m_separator->currentData().toInt());
  choice.writer.bNames = m_names->isChecked();
  return choice;
}

void ExportDialog::FollowForm() {
  const bool bCsv = m_form->currentData().toInt() == static_cast<int>(Form::Csv);
  m_separator->setEnabled(bCsv);
  m_names->setEnabled(bCsv);
}

QString SuffixOf(Form form) {
  switch (form) {
    case Form::JsonLines:
      return QStringLiteral(".jsonl");
    case Form::Sql:
      return QStringLiteral(".sql");
    case Form::AlignedText:
      return QStringLiteral(".txt");
    case Form::Csv:
      break;
  }
  return QStringLiteral(".csv");
}

QString FileNameOf(const QString& sText, Form form) {
  // A file system takes 255 bytes; some are for the suffix and a mark of missing rows.
  constexpr int kLongestName = 50;
  QString sName = sText.simplified().left(kLongestName);
  for (QChar& c : sName) {
    if (!c.isLetterOrNumber() && c != u' ' && c != u'-' && c != u'_' && c != u'.') c = u'_';
  }
  while (sName.startsWith(u'.')) sName.remove(0, 1);
  return (sName.isEmpty() ? QStringLiteral("Rows") : sName) + SuffixOf(form);
}

}  // namespace orvane::controls
