// Texts of others, such as names and paths, as tool tips that show them as they are.
// User-interface thread.
#pragma once

#include <QString>
#include <QTextDocument>

namespace orvane::console {

/// A tool tip takes a text that looks like mark-up for it, and never breaks the line of another;
/// such texts, and long ones, are written out as mark-up.
inline QString ToolTipOf(const QString& sText) {
  constexpr int kLongestLine = 80;
  if (!Qt::mightBeRichText(sText) && sText.size() <= kLongestLine) return sText;
  return QStringLiteral("<div style=\"white-space: pre-wrap\">%1</div>").arg(sText.toHtmlEscaped());
}

}  // namespace orvane::console
