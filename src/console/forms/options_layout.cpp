#include <QGridLayout>
#include <QVBoxLayout>

#include "console/forms/button_controls.h"
#include "console/forms/caption_controls.h"
#include "console/forms/form_layouts.h"
#include "console/forms/line_text_control.h"

namespace orvane::console {
namespace {

constexpr int kNumberCharacters = 12;
constexpr int kTimeCharacters = 28;

}  // namespace

void LayOutOptions(QtForm& form) {
  QGroupBox* const frmQueryLimits = form.Add<FrameControl>("m_frmQueryLimits");
  SizedLineEdit* const txtMaxRows = form.Add<LineTextControl>("m_txtMaxRows");
  SizedLineEdit* const txtTimeout = form.Add<LineTextControl>("m_txtTimeout");
  QLabel* const lblMaxRows = LabelFor(form, "m_lblMaxRows", txtMaxRows);
  QLabel* const lblTimeout = LabelFor(form, "m_lblTimeout", txtTimeout);
  QLabel* const lblSeconds = UnitOf(form, "m_lblSeconds", txtTimeout);
  QGroupBox* const frmDefTimeRange = form.Add<FrameControl>("m_frmDefTimeRange");
  SizedLineEdit* const txtDefStartTime = form.Add<LineTextControl>("m_txtDefStartTime");
  SizedLineEdit* const txtDefEndTime = form.Add<LineTextControl>("m_txtDefEndTime");
  QLabel* const lblDefStartTime = LabelFor(form, "m_lblDefStartTime", txtDefStartTime);
  QLabel* const lblDefEndTime = LabelFor(form, "m_lblDefEndTime", txtDefEndTime);
  for (SizedLineEdit* const txt : {txtMaxRows, txtTimeout}) {
    txt->Characters(kNumberCharacters, false);
    txt->setAlignment(Qt::AlignRight);
    txt->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  }
  for (SizedLineEdit* const txt : {txtDefStartTime, txtDefEndTime}) {
    txt->Characters(kTimeCharacters, true);
  }

  auto* const limits = new QGridLayout(frmQueryLimits);
  limits->addWidget(lblMaxRows, 0, 0);
  limits->addWidget(txtMaxRows, 0, 1);
  limits->addWidget(lblTimeout, 1, 0);
  limits->addWidget(txtTimeout, 1, 1);
  limits->addWidget(lblSeconds, 1, 2);
  limits->setColumnStretch(2, 1);
  auto* const range = new QGridLayout(frmDefTimeRange);
  range->addWidget(lblDefStartTime, 0, 0);
  range->addWidget(txtDefStartTime, 0, 1);
  range->addWidget(lblDefEndTime, 1, 0);
  range->addWidget(txtDefEndTime, 1, 1);
  range->setColumnStretch(1, 1);

  auto* const layout = new QVBoxLayout(&form.Dialog().Body());
  layout->setContentsMargins({});
  layout->addWidget(frmQueryLimits);
  layout->addWidget(frmDefTimeRange);
  layout->addStretch(1);
  form.Dialog().Foot(OkCancelRow(form, "m_btnOK", "m_btnCancel"));
  // The boxes of both frames line up.
  form.Dialog().SameWidth({lblMaxRows, lblTimeout, lblDefStartTime, lblDefEndTime});
  form.Dialog().InitialFocus(*txtMaxRows);
}

}  // namespace orvane::console
