#include "controls/view/spreadsheet_value.h"

#include <QDateTime>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

namespace orvane::controls {

namespace {

/// Spreadsheets write no more digits of a number.
constexpr qsizetype kWrittenDigits = 15;
constexpr int kMostExponent = 40;

/// Whether a number in this format is a point in time: its code has letters of dates, beside texts
/// in quotes and what stands in brackets.
bool IsOfTime(const QString& sFormat) {
  static const QRegularExpression kAside(QStringLiteral(R"("[^"]*"|\[[^\]]*\]|\\.|&[a-z]+;)"));
  static const QRegularExpression kLetters(QStringLiteral("[ymdhs]"),
                                           QRegularExpression::CaseInsensitiveOption);
  QString sCode = sFormat;
  return sCode.remove(kAside).contains(kLetters);
}

QString TimeOf(double days) {
  constexpr double kMillisecondsADay = 86'400'000.0;
  constexpr double kMostDays = 2'958'465.0;  // the end of the year 9999
  if (!(days >= 0) || days > kMostDays) return {};
  const QDateTime time = QDateTime(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC)
                             .addMSecs(std::llround(days * kMillisecondsADay));
  const QString sClock = time.toString(time.time().msec() != 0 ? u"HH:mm:ss.zzz" : u"HH:mm:ss");
  return days < 1 ? sClock : time.toString(u"yyyy-MM-dd ") + sClock;
}

/// Whether zero and one are False and True in this format: its name is of the language, and what it
/// shows has no digits. A letter alone, however often, is a part of a date.
bool IsBoolean(const QString& sFormat, const QString& sShown, double number) {
  const bool bWord = !sFormat.isEmpty() &&
                     std::ranges::all_of(sFormat, [](QChar c) { return c.isLetter(); }) &&
                     sFormat.count(sFormat.front(), Qt::CaseInsensitive) < sFormat.size();
  return bWord && (number == 0 || number == 1) &&
         std::ranges::none_of(sShown, [](QChar c) { return c.isDigit(); });
}

/// Columns of whole numbers and of decimals know no exponent. It stays where digits would have to
/// be made up: of a whole number with more of them than it writes, a spreadsheet gives the first.
QString WithoutExponent(const QString& sNumber) {
  static const QRegularExpression kParts(
      QStringLiteral(R"(^([+-]?)(\d+)(?:\.(\d*))?[eE]([+-]?\d{1,4})$)"));
  const QRegularExpressionMatch parts = kParts.match(sNumber);
  const int nExponent = parts.captured(4).toInt();
  if (!parts.hasMatch() || std::abs(nExponent) > kMostExponent) return sNumber;
  QString sDigits = parts.captured(2) + parts.captured(3);
  qsizetype nPoint = parts.captured(2).size() + nExponent;
  if (nPoint > sDigits.size() && sDigits.size() >= kWrittenDigits) return sNumber;
  if (nPoint < 1) {
    sDigits.prepend(QString(1 - nPoint, u'0'));
    nPoint = 1;
  }
  if (nPoint > sDigits.size()) sDigits.append(QString(nPoint - sDigits.size(), u'0'));
  if (nPoint < sDigits.size()) sDigits.insert(nPoint, u'.');
  return parts.captured(1) + sDigits;
}

}  // namespace

QString FormatIn(const QString& sNumberFormat) {
  return sNumberFormat.section(u';', 2);
}

QString HeldValue(const QString& sShown, const QString& sNumber, const QString& sNumberFormat) {
  QString sHeld = sNumber;
  // In languages that count so; there is nothing between thousands.
  if (sHeld.count(u',') == 1 && !sHeld.contains(u'.')) sHeld.replace(u',', u'.');
  bool bNumber = false;
  const double number = sHeld.toDouble(&bNumber);
  if (!bNumber) return sShown;
  const QString sFormat = FormatIn(sNumberFormat);
  if (sFormat == u"@") return sShown;
  if (IsBoolean(sFormat, sShown, number)) {
    return number != 0 ? QStringLiteral("True") : QStringLiteral("False");
  }
  const bool bGeneral = sFormat.compare(u"General", Qt::CaseInsensitive) == 0 ||
                        sFormat.compare(u"Standard", Qt::CaseInsensitive) == 0;
  if (bGeneral || !IsOfTime(sFormat)) return WithoutExponent(sHeld);
  // How long something took is no point in time.
  static const QRegularExpression kElapsed(QStringLiteral(R"(\[(h+|m+|s+)\])"),
                                           QRegularExpression::CaseInsensitiveOption);
  if (sFormat.contains(kElapsed)) return sShown;
  static const QRegularExpression kYearFirst(QStringLiteral(R"(^\d{4}-\d\d-\d\d)"));
  if (sShown.contains(kYearFirst)) return QString(sShown).replace(u',', u'.');
  const QString sTime = TimeOf(number);
  return sTime.isEmpty() ? sShown : sTime;
}

}  // namespace orvane::controls
