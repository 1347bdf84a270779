#include "widgets/tool_tip.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTextDocument>

namespace orvane::widgets {
namespace {

constexpr qsizetype kMostCharacters = 1500;
constexpr int kMostTipLines = 20;
constexpr int kLongestTipWord = 60;
constexpr int kLongestTipLine = 80;
constexpr QChar kBreakingPlace(0x200B);
constexpr QChar kTipEllipsis(0x2026);

/// How much of the text a tip holds.
qsizetype Held(const QString& sText) {
  int iLines = 0;
  for (qsizetype n = 0; n < sText.size(); ++n) {
    if (n == kMostCharacters) return sText.at(n - 1).isHighSurrogate() ? n - 1 : n;
    if (sText.at(n) == '\n' && ++iLines == kMostTipLines) return n;
  }
  return sText.size();
}

QString WithPlacesToBreak(const QString& sText) {
  QString sBroken;
  int iWord = 0;
  for (const QChar c : sText) {
    iWord = c.isSpace() ? 0 : iWord + 1;
    if (iWord > kLongestTipWord && !c.isLowSurrogate()) {
      sBroken += kBreakingPlace;
      iWord = 1;
    }
    sBroken += c;
  }
  return sBroken;
}

}  // namespace

QString ToolTipOf(const QString& sText) {
  if (!Qt::mightBeRichText(sText) && sText.size() <= kLongestTipLine && !sText.contains('\n')) {
    return sText;
  }
  const auto nHeld = Held(sText);
  auto sHeld = WithPlacesToBreak(sText.left(nHeld));
  if (nHeld < sText.size()) sHeld += kTipEllipsis;
  auto sTip =
      QStringLiteral("<div style=\"white-space: pre-wrap\">%1</div>").arg(sHeld.toHtmlEscaped());
  if (nHeld < sText.size()) {
    const QLocale locale;
    sTip += QStringLiteral("<p>%1</p>")
                .arg(QCoreApplication::translate(
                         "ToolTip",
                         "The first %1 of %2 characters. “Edit...” in the item's menu, "
                         "where it has one, shows all.")
                         .arg(locale.toString(nHeld), locale.toString(sText.size()))
                         .toHtmlEscaped());
  }
  return sTip;
}

}  // namespace orvane::widgets
