// Lays out the controls of each dialog's form. Captions come later, from whoever loads the form, so
// nothing here has a width that a longer word would not fit; sizes are counted in characters.
#pragma once

#include "console/forms/qt_form.h"

class QHBoxLayout;
class QLabel;

namespace orvane::console {

void LayOutOptions(QtForm& form);
void LayOutQuery(QtForm& form);
void LayOutAddCatalog(QtForm& form);
void LayOutTableQuery(QtForm& form);

/// The row of OK and Cancel, both as wide as the wider one, at the end of the line.
QHBoxLayout* OkCancelRow(QtForm& form, const char* sOk, const char* sCancel);
/// The space between parts of a form that belong less closely together.
int Gap(QtForm& form);
/// A label in front of a control, which takes the focus for its access key.
QLabel* LabelFor(QtForm& form, const char* sName, QWidget* buddy);
/// A label behind a box of numbers, with the unit that they are counted in.
QLabel* UnitOf(QtForm& form, const char* sName, QWidget* box);

}  // namespace orvane::console
