#include "controls/values/cell_format.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <string_view>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::DataType;
using platform::Text;
using platform::Timestamp;
using platform::Value;
using platform::ValueKind;

namespace {

constexpr int kShownCharacters = 1000;
constexpr std::size_t kShownBytes = 32;
constexpr QChar kEllipsis(0x2026);
constexpr QChar kLineBreakMark(0x21B5);
constexpr QChar kTabMark(0x21E5);
constexpr QChar kControlMark(0xFFFD);

bool IsControl(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
         c == QChar::ParagraphSeparator;
}

QChar MarkOf(QChar c) {
  if (c == u'\t') return kTabMark;
  if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
    return kLineBreakMark;
  }
  return kControlMark;
}

/// The text in one line, with a mark for each line break.
QString OneLine(QString sText) {
  sText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  for (QChar& c : sText) {
    if (IsControl(c)) c = MarkOf(c);
  }
  return sText;
}

/// Leaves so many characters at most, and both halves of each.
void Cut(QString& sText, qsizetype nMost) {
  if (sText.size() <= nMost) return;
  sText.truncate(nMost - (sText.at(nMost - 1).isHighSurrogate() ? 1 : 0));
}

QString ShownText(std::string_view sText) {
  // A cell may hold megabytes; only as much as could ever be seen is looked at. No character has
  // more than four bytes, and one cut in two lies behind those that are kept.
  constexpr std::size_t kBytesLookedAt = std::size_t{4} * (kShownCharacters + 1);
  QString sShown = QString::fromUtf8(
      sText.data(), static_cast<qsizetype>(std::min(sText.size(), kBytesLookedAt)));
  if (sShown.size() > kShownCharacters) {
    Cut(sShown, kShownCharacters);
    return OneLine(std::move(sShown)) + kEllipsis;
  }
  return OneLine(std::move(sShown));
}

QString ShownBytes(const platform::Bytes& bytes) {
  if (bytes.size() <= kShownBytes) {
    return QString::fromStdString(platform::ToText(Value(bytes)));
  }
  const platform::Bytes head(bytes.begin(),
                             bytes.begin() + static_cast<std::ptrdiff_t>(kShownBytes));
  return QString::fromStdString(platform::ToText(Value(head))) + kEllipsis +
         QStringLiteral(" (%1 bytes)").arg(bytes.size());
}

/// The same reading of the clock as if it were UTC, where it can be told at all.
Timestamp InZone(Timestamp timestamp, const zones::TimeZone& zone) {
  const std::chrono::microseconds offset = zone.OffsetAt(timestamp);
  const auto since = timestamp.time_since_epoch();
  using Limits = std::numeric_limits<std::chrono::microseconds::rep>;
  const bool bFits = offset.count() >= 0 ? since.count() <= Limits::max() - offset.count()
                                         : since.count() >= Limits::min() - offset.count();
  return bFits ? timestamp + offset : timestamp;
}

}  // namespace

QString TypeName(DataType type) {
  switch (type) {
    case DataType::Integer:
      return QStringLiteral("Integer (32 bits)");
    case DataType::BigInt:
      return QStringLiteral("Integer (64 bits)");
    case DataType::Double:
      return QStringLiteral("Floating-point number");
    case DataType::Numeric:
      return QStringLiteral("Decimal number");
    case DataType::Boolean:
      return QStringLiteral("Boolean");
    case DataType::Guid:
      return QStringLiteral("GUID");
    case DataType::Binary:
      return QStringLiteral("Bytes");
    case DataType::WChar:
      return QStringLiteral("Text");
    case DataType::DBDate:
      return QStringLiteral("Date");
    case DataType::DBTime:
      return QStringLiteral("Time of day");
    case DataType::DBTimeStamp:
      return QStringLiteral("Date and time");
    case DataType::WallTime:
      return QStringLiteral("Date and time without a time zone");
    case DataType::Empty:
      break;
  }
  return QStringLiteral("Any type");
}

Qt::Alignment AlignmentOf(DataType type) {
  switch (type) {
    case DataType::Integer:
    case DataType::BigInt:
    case DataType::Double:
    case DataType::Numeric:
      return Qt::AlignRight | Qt::AlignVCenter;
    case DataType::Boolean:
      return Qt::AlignCenter;
    case DataType::Empty:
    case DataType::Guid:
    case DataType::Binary:
    case DataType::WChar:
    case DataType::DBDate:
    case DataType::DBTime:
    case DataType::DBTimeStamp:
    case DataType::WallTime:
      break;
  }
  return Qt::AlignLeft | Qt::AlignVCenter;
}

QString CellFormat::Shown(const Value& vtValue) const {
  if (vtValue.IsNull()) return QStringLiteral("NULL");
  if (const auto* text = vtValue.As<Text>()) return ShownText(*text);
  if (const auto* bytes = vtValue.As<platform::Bytes>()) return ShownBytes(*bytes);
  return Whole(vtValue);
}

int CellFormat::FractionOf(const Value& vtValue) {
  std::int64_t count = 0;
  if (const auto* timestamp = vtValue.As<Timestamp>()) {
    count = timestamp->time_since_epoch().count();
  } else if (const auto* wall = vtValue.As<platform::WallTime>()) {
    count = wall->time_since_epoch().count();
  } else if (const auto* time = vtValue.As<platform::TimeOfDay>()) {
    count = time->count();
  }
  if (count % 1'000 != 0) return 6;
  return count % 1'000'000 != 0 ? 3 : 0;
}

QString CellFormat::Shown(const Value& vtValue, int nFraction) const {
  QString sShown = Shown(vtValue);
  const bool bTime = vtValue.As<Timestamp>() || vtValue.As<platform::WallTime>() ||
                     vtValue.As<platform::TimeOfDay>();
  if (!bTime || nFraction == 0) return sShown;
  qsizetype nPoint = sShown.indexOf(u'.');
  if (nPoint < 0) {
    nPoint = sShown.size();
    sShown += u'.';
  }
  return sShown.leftJustified(nPoint + 1 + nFraction, u'0');
}

QString CellFormat::Whole(const Value& vtValue) const {
  return QString::fromStdString(WholeText(vtValue));
}

Text CellFormat::WholeText(const Value& vtValue) const {
  if (vtValue.Kind() == ValueKind::Object) return "(object)";
  if (const auto* timestamp = vtValue.As<Timestamp>()) {
    return platform::ToText(Value(InZone(*timestamp, m_zone)));
  }
  return platform::ToText(vtValue);
}

CellFormat::Part CellFormat::Beginning(const Value& vtValue, qsizetype nCharacters) const {
  // No character has more than four bytes, and one cut in two lies behind those that are wanted.
  const auto most = static_cast<std::size_t>(4 * (nCharacters + 1));
  const auto* text = vtValue.As<Text>();
  if (text && text->size() > most) {
    Part part{QString::fromUtf8(text->data(), static_cast<qsizetype>(most))};
    Cut(part.sText, nCharacters);
    for (const char ch : *text) {
      const auto byte = static_cast<unsigned char>(ch);
      // What follows in a character begins with the bits 10; the longest ones are two in UTF-16.
      if ((byte & 0xC0U) != 0x80U) part.nWhole += byte >= 0xF0U ? 2 : 1;
    }
    return part;
  }
  const auto* bytes = vtValue.As<platform::Bytes>();
  if (bytes && bytes->size() > most) {
    const auto head = bytes->begin() + static_cast<std::ptrdiff_t>(most);
    constexpr qsizetype kMark = 2;  // 0x
    return {Whole(platform::Bytes(bytes->begin(), head)).left(nCharacters),
            2 * static_cast<qsizetype>(bytes->size()) + kMark};
  }
  Part part{Whole(vtValue)};
  part.nWhole = part.sText.size();
  Cut(part.sText, nCharacters);
  return part;
}

Qt::Alignment CellFormat::Alignment(const Value& vtValue, DataType column) {
  switch (vtValue.Kind()) {
    case ValueKind::Null:
      return AlignmentOf(column);
    case ValueKind::Boolean:
      return AlignmentOf(DataType::Boolean);
    case ValueKind::Long:
    case ValueKind::LongLong:
    case ValueKind::Double:
    case ValueKind::Decimal:
      return AlignmentOf(DataType::Double);
    case ValueKind::Text:
    case ValueKind::Timestamp:
    case ValueKind::WallTime:
    case ValueKind::Date:
    case ValueKind::TimeOfDay:
    case ValueKind::Bytes:
    case ValueKind::Guid:
    case ValueKind::Object:
      break;
  }
  return AlignmentOf(DataType::WChar);
}

}  // namespace orvane::controls
