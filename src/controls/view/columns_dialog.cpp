#include "controls/view/columns_dialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QVBoxLayout>
#include <algorithm>

namespace orvane::controls {

ColumnsDialog::ColumnsDialog(const std::vector<ColumnChoice>& choices, QWidget* parent)
    : QDialog(parent),
      m_choices(choices),
      m_model(new QStandardItemModel(this)),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)) {
  setObjectName("columnsDialog");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle("Columns");
  for (const ColumnChoice& choice : m_choices) {
    auto* item = new QStandardItem(choice.sName);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(choice.bShown ? Qt::Checked : Qt::Unchecked);
    m_model->appendRow(item);
  }
  auto* found = new QSortFilterProxyModel(this);
  found->setSourceModel(m_model);
  found->setFilterCaseSensitivity(Qt::CaseInsensitive);
  auto* filter = new QLineEdit;
  filter->setObjectName("columnsFilter");
  filter->setPlaceholderText("Find a column");
  filter->setAccessibleName("Find a column");
  filter->setClearButtonEnabled(true);
  connect(filter, &QLineEdit::textChanged, found, &QSortFilterProxyModel::setFilterFixedString);
  auto* list = new QListView;
  list->setObjectName("columnsList");
  list->setAccessibleName("Columns that are seen");
  list->setModel(found);
  list->setUniformItemSizes(true);
  list->setCurrentIndex(found->index(0, 0));

  auto* all = m_buttons->addButton("Show &All", QDialogButtonBox::ResetRole);
  all->setObjectName("columnsAll");
  connect(all, &QPushButton::clicked, this, [this] { CheckAll(); });
  connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(m_model, &QStandardItemModel::itemChanged, this, [this] { OfferOk(); });

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(filter);
  layout->addWidget(list, 1);
  layout->addWidget(m_buttons);
  list->setFocus();
}

std::vector<ColumnChoice> ColumnsDialog::Choices() const {
  std::vector<ColumnChoice> choices = m_choices;
  for (std::size_t n = 0; n < choices.size(); ++n) {
    choices[n].bShown = m_model->item(static_cast<int>(n))->checkState() == Qt::Checked;
  }
  return choices;
}

void ColumnsDialog::CheckAll() {
  for (int n = 0; n < m_model->rowCount(); ++n) m_model->item(n)->setCheckState(Qt::Checked);
}

void ColumnsDialog::OfferOk() {
  const auto choices = Choices();
  m_buttons->button(QDialogButtonBox::Ok)
      ->setEnabled(std::ranges::any_of(choices, &ColumnChoice::bShown));
}

}  // namespace orvane::controls
