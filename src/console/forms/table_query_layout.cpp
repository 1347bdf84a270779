#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "console/forms/button_controls.h"
#include "console/forms/caption_controls.h"
#include "console/forms/drop_down_control.h"
#include "console/forms/form_layouts.h"
#include "console/forms/list_control.h"
#include "console/forms/memo_text_control.h"

namespace orvane::console {
namespace {

QGroupBox* LayOutTable(QtForm& form) {
  QGroupBox* const frmTable = form.Add<FrameControl>("m_frmTable");
  auto* const grid = new QGridLayout(frmTable);
  grid->addWidget(form.Add<LabelControl>("m_lblCatalog1"), 0, 0);
  grid->addWidget(form.Add<ValueControl>("m_lblCatalog2"), 0, 1);
  grid->addWidget(form.Add<LabelControl>("m_lblTable1"), 1, 0);
  grid->addWidget(form.Add<ValueControl>("m_lblTable2"), 1, 1);
  grid->setColumnStretch(1, 1);
  return frmTable;
}

/// The two lists share what the form has to spare; the buttons stand between them.
QGroupBox* LayOutColumns(QtForm& form) {
  QGroupBox* const frmColumns = form.Add<FrameControl>("m_frmColumns");
  ColumnList* const lvAvailable = form.Add<ListControl>("m_lvAvailableCols");
  QPushButton* const btnSelect = form.Add<ButtonControl>("m_btnSelectCol");
  QPushButton* const btnSelectAll = form.Add<ButtonControl>("m_btnSelectAllCols");
  QPushButton* const btnDeselect = form.Add<ButtonControl>("m_btnDeselectCol");
  QPushButton* const btnDeselectAll = form.Add<ButtonControl>("m_btnDeselectAllCols");
  ColumnList* const lvSelected = form.Add<ListControl>("m_lvSelCols");
  // A button that has nothing left to move leaves the focus to the list that it emptied.
  form.Dialog().Refuge(*btnSelect, *lvAvailable);
  form.Dialog().Refuge(*btnSelectAll, *lvAvailable);
  form.Dialog().Refuge(*btnDeselect, *lvSelected);
  form.Dialog().Refuge(*btnDeselectAll, *lvSelected);
  auto* const buttons = new QVBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(btnSelect);
  buttons->addWidget(btnSelectAll);
  buttons->addSpacing(Gap(form));
  buttons->addWidget(btnDeselect);
  buttons->addWidget(btnDeselectAll);
  buttons->addStretch(1);

  auto* const grid = new QGridLayout(frmColumns);
  grid->addWidget(LabelFor(form, "m_lblAvailableCols", lvAvailable), 0, 0);
  grid->addWidget(LabelFor(form, "m_lblSelectedCols", lvSelected), 0, 2);
  grid->addWidget(lvAvailable, 1, 0);
  grid->addLayout(buttons, 1, 1);
  grid->addWidget(lvSelected, 1, 2);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(2, 1);
  grid->setRowStretch(1, 1);
  form.Dialog().InitialFocus(*lvAvailable);
  return frmColumns;
}

QGroupBox* LayOutFilter(QtForm& form) {
  QGroupBox* const frmFilterCond = form.Add<FrameControl>("m_frmFilterCond");
  auto* const column = new QVBoxLayout(frmFilterCond);
  column->addWidget(form.Add<MemoTextControl>("m_txtFilterCond"), 1);
  column->addWidget(form.Add<CheckBoxControl>("m_chkDefaultFilterCond"), 0, Qt::AlignLeading);
  return frmFilterCond;
}

QGroupBox* LayOutSorting(QtForm& form) {
  QGroupBox* const frmSortingCriteria = form.Add<FrameControl>("m_frmSortingCriteria");
  QComboBox* const cmbSortCol = form.Add<DropDownControl>("m_cmbSortCol");
  QComboBox* const cmbSortOrder = form.Add<DropDownControl>("m_cmbSortOrder");
  auto* const row = new QHBoxLayout;
  row->addWidget(LabelFor(form, "m_lblSortCol", cmbSortCol));
  row->addWidget(cmbSortCol, 2);
  row->addSpacing(Gap(form));
  row->addWidget(LabelFor(form, "m_lblSortOrder", cmbSortOrder));
  row->addWidget(cmbSortOrder, 1);
  auto* const column = new QVBoxLayout(frmSortingCriteria);
  column->addLayout(row);
  column->addWidget(form.Add<CheckBoxControl>("m_chkNoSortingCriteria"), 0, Qt::AlignLeading);
  return frmSortingCriteria;
}

}  // namespace

void LayOutTableQuery(QtForm& form) {
  auto* const layout = new QVBoxLayout(&form.Dialog().Body());
  layout->setContentsMargins({});
  layout->addWidget(LayOutTable(form));
  layout->addWidget(LayOutColumns(form), 1);
  layout->addWidget(LayOutFilter(form));
  layout->addWidget(LayOutSorting(form));
  form.Dialog().Foot(OkCancelRow(form, "m_btnOk", "m_btnCancel"));
  form.Dialog().setSizeGripEnabled(true);
}

}  // namespace orvane::console
