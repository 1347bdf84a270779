// A caption as it is read out: without the access key's mark and the colon.
// Used wherever a form names its controls for screen readers; pure.
#pragma once

#include <QString>

namespace orvane::console {

inline QString SpokenName(const QString& sCaption) {
  QString sName;
  for (qsizetype i = 0; i < sCaption.size(); ++i) {
    if (sCaption[i] == u'&' && i + 1 < sCaption.size()) ++i;
    sName += sCaption[i];
  }
  if (sName.endsWith(u':')) sName.chop(1);
  return sName;
}

}  // namespace orvane::console
