#include "controls/values/tip_text.h"

#include <QLocale>

namespace orvane::controls {

namespace {

constexpr qsizetype kMostCharacters = 1500;
constexpr int kMostLines = 20;
constexpr int kLongestWord = 60;
constexpr QChar kCutMark(0x2026);
constexpr QChar kBreakingPlace(0x200B);

/// As much of the text as a tip holds.
qsizetype Shown(const QString& sWhole) {
  int nLines = 0;
  for (qsizetype n = 0; n < sWhole.size(); ++n) {
    if (n == kMostCharacters) return sWhole.at(n - 1).isHighSurrogate() ? n - 1 : n;
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

QString TipText(const QString& sWhole, const QString& sHow) {
  const qsizetype nShown = Shown(sWhole);
  QString sText = Breakable(sWhole.left(nShown));
  if (nShown < sWhole.size()) sText += kCutMark;
  QString sTip =
      QStringLiteral("<div style=\"white-space: pre-wrap\">%1</div>").arg(sText.toHtmlEscaped());
  if (nShown < sWhole.size()) {
    sTip += QStringLiteral("<p>The first %1 of %2 characters. %3</p>")
                .arg(Grouped(nShown), Grouped(sWhole.size()), sHow.toHtmlEscaped());
  }
  return sTip;
}

QString Brief(const QString& sText) {
  constexpr qsizetype kBriefCharacters = 50;
  return sText.size() <= kBriefCharacters ? sText : sText.left(kBriefCharacters) + QChar(0x2026);
}

}  // namespace orvane::controls
