// How well one colour can be told from another, as a ratio from 1 (not at all) to 21 (black on
// white). Used wherever a colour is chosen by what lies under it; pure.
#pragma once

#include <QColor>

namespace orvane::console {

/// Below this ratio large text and marks cannot be told from their background.
constexpr double kLeastContrast = 3.0;

double Contrast(const QColor& one, const QColor& other);

}  // namespace orvane::console
