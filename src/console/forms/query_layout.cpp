#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "console/forms/form_layouts.h"
#include "console/forms/line_text_control.h"
#include "console/forms/sql_text_control.h"
#include "console/forms/sql_view.h"

namespace orvane::console {
namespace {

constexpr int kNameCharacters = 40;

}  // namespace

void LayOutQuery(QtForm& form) {
  SizedLineEdit* const txtName = form.Add<LineTextControl>("m_txtName");
  SqlEditor* const txtSqlStatement = form.Add<SqlTextControl>("m_txtSqlStatement");
  txtName->Characters(kNameCharacters, true);

  auto* const name = new QHBoxLayout;
  name->addWidget(LabelFor(form, "m_lblName", txtName));
  name->addWidget(txtName, 1);
  auto* const layout = new QVBoxLayout(&form.Dialog().Body());
  layout->setContentsMargins({});
  layout->addLayout(name);
  layout->addSpacing(Gap(form) / 2);
  layout->addWidget(LabelFor(form, "m_lblSqlStatement", &txtSqlStatement->View()));
  layout->addWidget(txtSqlStatement, 1);
  form.Dialog().Foot(OkCancelRow(form, "m_btnOk", "m_btnCancel"));
  form.Dialog().setSizeGripEnabled(true);
  form.Dialog().InitialFocus(*txtName);
}

}  // namespace orvane::console
