#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "console/forms/caption_controls.h"
#include "console/forms/form_layouts.h"
#include "console/forms/line_text_control.h"

namespace orvane::console {
namespace {

constexpr int kTextCharacters = 40;
constexpr int kSizeCharacters = 12;

}  // namespace

void LayOutAddCatalog(QtForm& form) {
  SizedLineEdit* const txtName = form.Add<LineTextControl>("m_txtName");
  SizedLineEdit* const txtPath = form.Add<LineTextControl>("m_txtPath");
  SizedLineEdit* const txtSize = form.Add<LineTextControl>("m_txtSize");
  txtName->Characters(kTextCharacters, true);
  txtPath->Characters(kTextCharacters, true);
  txtSize->Characters(kSizeCharacters, false);
  txtSize->setAlignment(Qt::AlignRight);

  auto* const boxes = new QGridLayout;
  boxes->addWidget(LabelFor(form, "Label1", txtName), 0, 0);
  boxes->addWidget(txtName, 0, 1, 1, 2);
  boxes->addWidget(LabelFor(form, "Label2", txtPath), 1, 0);
  boxes->addWidget(txtPath, 1, 1, 1, 2);
  boxes->addWidget(LabelFor(form, "Label3", txtSize), 2, 0);
  boxes->addWidget(txtSize, 2, 1);
  boxes->addWidget(UnitOf(form, "Label4", txtSize), 2, 2);
  // What a size and a path together mean is a rule of old that nobody would guess.
  auto* const hint = new QLabel(QObject::tr("A size takes the place of a path."));
  hint->setObjectName("m_lblHint");
  boxes->addWidget(hint, 3, 1, 1, 2);
  txtPath->setAccessibleDescription(hint->text());
  boxes->setColumnStretch(2, 1);
  auto* const layout = new QVBoxLayout(&form.Dialog().Body());
  layout->setContentsMargins({});
  layout->addLayout(boxes);
  layout->addStretch(1);
  form.Dialog().Foot(OkCancelRow(form, "m_btnOk", "m_btnCancel"));
  form.Dialog().InitialFocus(*txtName);
}

}  // namespace orvane::console
