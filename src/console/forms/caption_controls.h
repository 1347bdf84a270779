// Captions on widgets: a label that names its buddy, a label that shows a value, a frame's title.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include <QGroupBox>
#include <QLabel>

#include "console/forms/form_control.h"
#include "console/look/elided_label.h"

namespace orvane::console {

/// The access key gives the focus to the label's buddy, and the label is the buddy's name for those
/// who hear the form read out.
class LabelControl : public FormControl<platform::Caption, QLabel> {
 public:
  explicit LabelControl(FormDialog& dialog);
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;
  void SetFocus() override;

 private:
  platform::Text m_sLabel;
};

/// A label that says in which unit the number in a box is counted.
class UnitLabel : public QLabel {
 public:
  using QLabel::QLabel;
  /// The unit becomes the box's description for those who hear the form read out.
  void Box(QWidget* box) { m_box = box; }
  void Unit(const QString& sUnit);

 private:
  QWidget* m_box = nullptr;
};

class UnitControl : public FormControl<platform::Caption, UnitLabel> {
 public:
  explicit UnitControl(FormDialog& dialog);
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;

 private:
  platform::Text m_sLabel;
};

/// Shows a name as it is: an "&" in it is none of an access key.
class ValueControl : public FormControl<platform::Caption, ElidedLabel> {
 public:
  using FormControl::FormControl;
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;

 private:
  platform::Text m_sLabel;
};

class FrameControl : public FormControl<platform::Caption, QGroupBox> {
 public:
  using FormControl::FormControl;
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;

 private:
  platform::Text m_sLabel;
};

}  // namespace orvane::console
