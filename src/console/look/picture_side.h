// How large a picture beside a text is: as the text, however large its letters are. Used by rows,
// buttons and heads; pure.
#pragma once

#include <QFontMetrics>
#include <algorithm>

namespace orvane::console {

/// In pixels; the drawings are made for 16 and more.
inline int PictureSide(const QFontMetrics& metrics) {
  constexpr int kSmallest = 16;
  return std::max(kSmallest, metrics.height());
}

}  // namespace orvane::console
