// What the three kinds of text box have in common: the text as it was set or typed, and the colour
// as it was set, both apart from what the widget makes of them.
#pragma once

#include <QPalette>
#include <QWidget>
#include <utility>

#include "console/forms/form_control.h"
#include "console/forms/legible_color.h"

namespace orvane::console {

/// The widget has isReadOnly and setReadOnly.
template <class W>
class TextControl : public FormControl<platform::TextBox, W> {
 public:
  explicit TextControl(FormDialog& dialog)
      : FormControl<platform::TextBox, W>(dialog),
        m_paletteChange(dialog.OnPaletteChange([this] { Paint(); })) {}

  platform::Text Text() const override { return m_sText; }
  void Text(const platform::Text& sText) override {
    m_sText = sText;
    {
      const Setting setting(m_bSetting);
      Display(QString::fromStdString(sText));
      m_sDisplayed = Displayed();
    }
    m_change.Raise();
  }
  platform::Boolean Locked() const override { return this->m_widget->isReadOnly(); }
  void Locked(platform::Boolean bLocked) override { this->m_widget->setReadOnly(bLocked); }
  platform::Color ForeColor() const override { return m_color; }
  void ForeColor(platform::Color color) override {
    m_color = color;
    Paint();
  }
  platform::Subscription OnChange(std::function<void()> handler) override {
    return m_change.Connect(std::move(handler));
  }

 protected:
  virtual void Display(const QString& sText) = 0;
  virtual QString Displayed() const = 0;
  /// Draws the text in the colour. Called again when the desktop's colours change.
  virtual void Paint() {
    QPalette palette;
    if (m_color != platform::Color{}) {
      const QColor drawn = LegibleColor(m_color, this->m_dialog.palette());
      palette.setColor(QPalette::Active, QPalette::Text, drawn);
      palette.setColor(QPalette::Inactive, QPalette::Text, drawn);
    }
    this->m_widget->setPalette(palette);
  }
  /// Called by the widget's own notification, whoever made the change.
  void Changed() {
    if (m_bSetting) return;
    // Widgets also report a change when a text was only laid out anew.
    QString sDisplayed = Displayed();
    if (sDisplayed == m_sDisplayed) return;
    m_sDisplayed = std::move(sDisplayed);
    m_sText = m_sDisplayed.toStdString();
    this->m_dialog.Run([this] { m_change.Raise(); });
  }

 private:
  platform::Text m_sText;
  QString m_sDisplayed;
  platform::Color m_color;
  bool m_bSetting = false;
  platform::Signal<> m_change;
  platform::Subscription m_paletteChange;
};

}  // namespace orvane::console
