#include "trend/trend_values.h"

#include <QGuiApplication>
#include <QPalette>
#include <QPixmap>
#include <cmath>

#include "platform/conversions.h"
#include "trend/trend_look.h"

namespace orvane::trend {

void TrendValues::Lines(const std::vector<TrendLine>* lines, const zones::TimeZone& zone) {
  beginResetModel();
  m_lines = lines;
  m_zone = zone;
  m_cursor.reset();
  m_lineShown.assign(lines ? lines->size() : 0, true);
  endResetModel();
}

void TrendValues::Cursor(std::optional<double> time) {
  m_cursor = time;
  if (rowCount() > 0) emit dataChanged(index(0, Value), index(rowCount() - 1, Time));
}

std::optional<std::size_t> TrendValues::PointOf(std::size_t line) const {
  return m_cursor ? (*m_lines)[line].series.LastUntil(*m_cursor) : std::nullopt;
}

QString TrendValues::ValueText(std::size_t line) const {
  const auto point = PointOf(line);
  if (!point) return {};
  const platform::Text sStored = (*m_lines)[line].StoredText(*point);
  if (!sStored.empty()) return QString::fromStdString(sStored);
  const double value = (*m_lines)[line].series.ValueAt(*point);
  return std::isnan(value) ? QStringLiteral("no value")
                           : QString::fromStdString(platform::ToText(value));
}

QString TrendValues::TimeText(double time) const {
  QString sText = QString::fromStdString(date::format("%F %T", m_zone.ToLocal(TimestampOf(time))));
  while (sText.contains(u'.') && (sText.endsWith(u'0') || sText.endsWith(u'.'))) {
    const bool bPoint = sText.endsWith(u'.');
    sText.chop(1);
    if (bPoint) break;
  }
  return sText;
}

QString TrendValues::Spoken() const {
  if (!m_lines || !m_cursor) return QStringLiteral("The cursor stands nowhere; press Right.");
  QStringList parts;
  for (std::size_t n = 0; n < m_lines->size(); ++n) {
    if (!m_lineShown[n]) continue;
    const TrendLine& line = (*m_lines)[n];
    const QString sValue = ValueText(n).isEmpty() ? QStringLiteral("no value") : ValueText(n);
    parts << QStringLiteral("%1 %2 %3")
                 .arg(QString::fromStdString(line.sName), sValue,
                      QString::fromStdString(line.sUnit))
                 .trimmed();
  }
  return QStringLiteral("At %1: %2.").arg(TimeText(*m_cursor), parts.join(QStringLiteral("; ")));
}

int TrendValues::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !m_lines ? 0 : static_cast<int>(m_lines->size());
}

QVariant TrendValues::data(const QModelIndex& index, int nRole) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto line = static_cast<std::size_t>(index.row());
  if (index.column() == Name) {
    if (nRole == Qt::CheckStateRole) return m_lineShown[line] ? Qt::Checked : Qt::Unchecked;
    if (nRole == Qt::DecorationRole) {
      return TrendLook(QGuiApplication::palette()).Sample(line, {28, 14}, 1);
    }
  }
  if (nRole == Qt::TextAlignmentRole && index.column() == Value) {
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  }
  if (nRole != Qt::DisplayRole) return {};
  switch (index.column()) {
    case Name:
      return QString::fromStdString((*m_lines)[line].sName);
    case Value:
      return ValueText(line);
    case Unit:
      return QString::fromStdString((*m_lines)[line].sUnit);
    default: {
      const auto point = PointOf(line);
      return point ? TimeText((*m_lines)[line].series.TimeAt(*point)) : QString();
    }
  }
}

QVariant TrendValues::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
  if (orientation != Qt::Horizontal || nRole != Qt::DisplayRole) return {};
  switch (nSection) {
    case Name:
      return QStringLiteral("Line");
    case Value:
      return m_cursor ? QStringLiteral("Value at %1").arg(TimeText(*m_cursor))
                      : QStringLiteral("Value at the cursor");
    case Unit:
      return QStringLiteral("Unit");
    default:
      return QStringLiteral("Since");
  }
}

Qt::ItemFlags TrendValues::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  return index.column() == Name ? flags | Qt::ItemIsUserCheckable : flags;
}

bool TrendValues::setData(const QModelIndex& index, const QVariant& value, int nRole) {
  if (nRole != Qt::CheckStateRole || index.column() != Name) return false;
  const auto line = static_cast<std::size_t>(index.row());
  m_lineShown[line] = value.toInt() == Qt::Checked;
  if (m_shown) m_shown(line, m_lineShown[line]);
  emit dataChanged(index, index);
  return true;
}

}  // namespace orvane::trend
