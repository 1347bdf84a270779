#include "console/app/appearance.h"

#include <QApplication>
#include <QPalette>
#include <cstdlib>
#include <utility>

#include "console/look/control_style.h"
#include "console/look/dialogs_on_screen.h"

namespace orvane::console {

namespace {

QColor Between(const QColor& one, const QColor& other) {
  return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2,
                (one.blue() + other.blue()) / 2);
}

}  // namespace

QPalette LightPalette() {
  QPalette palette(QColor(0xF3, 0xF5, 0xF7));
  palette.setColor(QPalette::Window, QColor(0xF3, 0xF5, 0xF7));
  palette.setColor(QPalette::WindowText, QColor(0x20, 0x28, 0x33));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(0xF7, 0xF9, 0xFB));
  palette.setColor(QPalette::Text, QColor(0x20, 0x28, 0x33));
  palette.setColor(QPalette::Button, QColor(0xEE, 0xF1, 0xF4));
  palette.setColor(QPalette::ButtonText, QColor(0x20, 0x28, 0x33));
  palette.setColor(QPalette::Mid, QColor(0xD0, 0xD6, 0xDD));
  palette.setColor(QPalette::PlaceholderText, QColor(0x62, 0x6E, 0x7C));
  palette.setColor(QPalette::Highlight, QColor(0x2F, 0x6D, 0xB5));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(0xD3, 0xE2, 0xF2));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, QColor(0x20, 0x28, 0x33));
  palette.setColor(QPalette::Link, QColor(0x2F, 0x6D, 0xB5));
  palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFF, 0xFF));
  palette.setColor(QPalette::ToolTipText, QColor(0x20, 0x28, 0x33));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(0x9A, 0xA4, 0xB0));
  }
  return palette;
}

void SeeToFaintText() {
  constexpr int kLeastDifference = 60;
  constexpr int kLeastOfDisabled = 40;
  auto palette = QApplication::palette();
  const auto ground = palette.color(QPalette::Base);
  const auto faint = palette.color(QPalette::PlaceholderText);
  if (faint.alpha() == 0 ||
      std::abs(faint.lightness() - ground.lightness()) * faint.alpha() / 255 < kLeastDifference) {
    auto text = palette.color(QPalette::Text);
    text.setAlphaF(0.6F);
    palette.setColor(QPalette::PlaceholderText, text);
  }
  for (const auto& [role, under] : {std::pair(QPalette::WindowText, QPalette::Window),
                                    std::pair(QPalette::Text, QPalette::Base),
                                    std::pair(QPalette::ButtonText, QPalette::Button)}) {
    const auto paper = palette.color(QPalette::Disabled, under);
    if (std::abs(palette.color(QPalette::Disabled, role).lightness() - paper.lightness()) <
        kLeastOfDisabled) {
      palette.setColor(QPalette::Disabled, role, Between(palette.color(role), paper));
    }
  }
  if (palette != QApplication::palette()) QApplication::setPalette(palette);
}

void PrepareApplication(QApplication& application) {
  QApplication::setApplicationName("orvane-console");
  QApplication::setOrganizationName("orvane");
  QApplication::setApplicationVersion(ORVANE_VERSION);
  QGuiApplication::setDesktopFileName("orvane-console");
  const bool bDark = QApplication::palette().color(QPalette::Window).lightness() < 128;
  QApplication::setStyle(new ControlStyle);
  application.installEventFilter(new DialogsOnScreen(&application));
  // A desktop that is dark, or in high contrast, has chosen its colours for a reason.
  if (!bDark) application.setPalette(LightPalette());
  SeeToFaintText();
}

}  // namespace orvane::console
