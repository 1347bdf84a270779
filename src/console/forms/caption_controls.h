// Captions on widgets: a label that names its buddy, a label that shows a value, a frame's title.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include <QGroupBox>
#include <QLabel>

#include "console/forms/form_control.h"
#include "console/look/elided_label.h"

namespace orvane::console {

/// A caption that gives back the text it was given, however its widget shows it.
template <class W>
class CaptionControl : public FormControl<platform::Caption, W> {
 public:
  using FormControl<platform::Caption, W>::FormControl;
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override {
    m_sLabel = sLabel;
    Show(QString::fromStdString(sLabel));
  }

 private:
  virtual void Show(const QString& sLabel) = 0;

  platform::Text m_sLabel;
};

/// The access key gives the focus to the label's buddy, and the label is the buddy's name for those
/// who hear the form read out.
class LabelControl : public CaptionControl<QLabel> {
 public:
  explicit LabelControl(FormDialog& dialog);
  void SetFocus() override;

 private:
  void Show(const QString& sLabel) override;
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

class UnitControl : public CaptionControl<UnitLabel> {
 public:
  explicit UnitControl(FormDialog& dialog);

 private:
  void Show(const QString& sLabel) override;
};

/// Shows a name as it is: an "&" in it is none of an access key.
class ValueControl : public CaptionControl<ElidedLabel> {
 public:
  using CaptionControl::CaptionControl;

 private:
  void Show(const QString& sLabel) override;
};

class FrameControl : public CaptionControl<QGroupBox> {
 public:
  using CaptionControl::CaptionControl;

 private:
  void Show(const QString& sLabel) override;
};

}  // namespace orvane::console
