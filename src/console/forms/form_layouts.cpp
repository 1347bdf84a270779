#include "console/forms/form_layouts.h"

#include <QHBoxLayout>

#include "console/forms/button_controls.h"
#include "console/forms/caption_controls.h"

namespace orvane::console {

QHBoxLayout* OkCancelRow(QtForm& form, const char* sOk, const char* sCancel) {
  QPushButton* const btnOk = form.Add<ButtonControl>(sOk);
  QPushButton* const btnCancel = form.Add<ButtonControl>(sCancel);
  form.Dialog().SameWidth({btnOk, btnCancel});
  auto* const row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(btnOk);
  row->addWidget(btnCancel);
  return row;
}

int Gap(QtForm& form) {
  return form.Dialog().fontMetrics().height();
}

QLabel* LabelFor(QtForm& form, const char* sName, QWidget* buddy) {
  QLabel* const label = form.Add<LabelControl>(sName);
  label->setBuddy(buddy);
  return label;
}

QLabel* UnitOf(QtForm& form, const char* sName, QWidget* box) {
  UnitLabel* const label = form.Add<UnitControl>(sName);
  label->Box(box);
  return label;
}

}  // namespace orvane::console
