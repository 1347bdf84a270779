// What a spreadsheet says that a cell holds, beside what it shows of it (the attributes sdval and
// sdnum of its page). Used by reading pages from the clipboard; pure, any thread.
#pragma once

#include <QString>

namespace orvane::controls {

/// The format that sdnum names: "@" is that of texts. Before it stand the language in which sdval
/// counts and that of the format.
QString FormatIn(const QString& sNumberFormat);

/// sNumberFormat is sdnum. A number comes with the digits that are held (sdval), with a point as
/// the decimal point and, where that adds no digit, without an exponent; a time in which the year
/// comes first as it is shown, another one from the number behind it; a Boolean as True or False;
/// all else as shown.
QString HeldValue(const QString& sShown, const QString& sNumber, const QString& sNumberFormat);

}  // namespace orvane::controls
