#include "console/look/breakable_text.h"

namespace orvane::console {

QString Breakable(const QString& sText, int nLongWord) {
  constexpr QChar kBreak(0x200B);
  QString sBreakable;
  int nInWord = 0;
  for (const QChar c : sText) {
    sBreakable += c;
    nInWord = c.isSpace() ? 0 : nInWord + 1;
    if (nInWord > nLongWord && !c.isHighSurrogate()) sBreakable += kBreak;
  }
  return sBreakable;
}

}  // namespace orvane::console
