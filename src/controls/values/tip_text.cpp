#include "controls/values/tip_text.h"

#include <QLocale>
#include <algorithm>

namespace orvane::controls {

namespace {

constexpr int kMostLines = 20;
constexpr int kLongestWord = 60;
constexpr QChar kCutMark(0x2026);
constexpr QChar kBreakingPlace(0x200B);

/// As much of the text as a tip holds.
qsizetype Shown(const QString& sWhole) {
  int nLines = 0;
  for (qsizetype n = 0; n < sWhole.size(); ++n) {
    if (n == kMostTipCharacters) return sWhole.at(n - 1).isHighSurrogate() ? n - 1 : n;
    if (sWhole.at(n) == u'\n' && ++nLines == kMostLines) return n;
  }
  return sWhole.size();
}

QString Breakable(const QString& sText) {
  QString sBroken;
  int nWord = 0;
  for (const QChar c : sText) {
    nWord = c.isSpace() ? 0 : nWord + 1;
    if (nWord > kLongestWord && !c.isLowSurrogate()) {
      sBroken += kBreakingPlace;
      nWord = 1;
    }
    sBroken += c;
  }
  return sBroken;
}

QString Grouped(qsizetype number) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

}  // namespace

QString TipText(const QString& sText, const QString& sHow, qsizetype nWhole) {
  nWhole = std::max(nWhole, sText.size());
  const qsizetype nShown = Shown(sText);
  QString sShown = Breakable(sText.left(nShown));
  if (nShown < nWhole) sShown += kCutMark;
  QString sTip =
      QStringLiteral("<div style=\"white-space: pre-wrap\">%1</div>").arg(sShown.toHtmlEscaped());
  if (nShown < nWhole) {
    sTip += QStringLiteral("<p>The first %1 of %2 characters. %3</p>")
                .arg(Grouped(nShown), Grouped(nWhole), sHow.toHtmlEscaped());
  }
  return sTip;
}

QString Brief(const QString& sText) {
  constexpr qsizetype kBriefCharacters = 50;
  return sText.size() <= kBriefCharacters ? sText : sText.left(kBriefCharacters) + QChar(0x2026);
}

}  // namespace orvane::controls
