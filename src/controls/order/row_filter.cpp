#include "controls/order/row_filter.h"

#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "controls/order/value_keys.h"
#include "controls/values/value_input.h"
#include "platform/conversions.h"

namespace orvane::controls {

using platform::Value;
using platform::ValueKind;

namespace {

std::optional<long double> NumberOf(const Value& vtValue) {
  if (const auto* ll = vtValue.As<std::int64_t>()) return static_cast<long double>(*ll);
  if (const auto* l = vtValue.As<std::int32_t>()) return *l;
  if (const auto* d = vtValue.As<double>()) return *d;
  if (const auto* b = vtValue.As<bool>()) return *b ? 1 : 0;
  if (const auto* t = vtValue.As<platform::Timestamp>()) {
    return static_cast<long double>(t->time_since_epoch().count());
  }
  if (const auto* t = vtValue.As<platform::WallTime>()) {
    return static_cast<long double>(t->time_since_epoch().count());
  }
  if (const auto* decimal = vtValue.As<platform::Decimal>()) {
    return std::strtold(decimal->sDigits.c_str(), nullptr);
  }
  return std::nullopt;
}

constexpr int kNullRank = -1;

/// What an engine without types of its own for them keeps as texts.
bool IsOfTexts(const Value& vtValue) {
  const ValueKind kind = vtValue.Kind();
  return kind == ValueKind::Text || kind == ValueKind::Date || kind == ValueKind::TimeOfDay ||
         kind == ValueKind::Guid;
}

/// The kinds in their order; those that are numbers, or kept as numbers, are one, and so are those
/// that are kept as texts. What is no number though it is of their kind stands with null: it is
/// neither less nor more than one, nor the same.
int RankOf(const Value& vtValue, bool bKinds) {
  const auto* d = vtValue.As<double>();
  if (vtValue.IsNull() || (d && std::isnan(*d))) return kNullRank;
  if (!bKinds && IsOfTexts(vtValue)) return static_cast<int>(ValueKind::Text);
  return NumberOf(vtValue) ? 0 : static_cast<int>(vtValue.Kind());
}

constexpr QLatin1StringView kEmptyText("\"\"");

/// A text between quotes stands for what is between them, blanks and nothing at all included.
bool IsQuoted(const QString& sTyped, platform::DataType type) {
  const bool bTexts = type == platform::DataType::WChar || type == platform::DataType::Empty;
  return bTexts && sTyped.size() >= 2 && sTyped.startsWith(u'"') && sTyped.endsWith(u'"');
}

QString Unquoted(const QString& sTyped) {
  return sTyped.sliced(1, sTyped.size() - 2).replace(kEmptyText, QLatin1StringView("\""));
}

template <class T>
int Order(const T& one, const T& other) {
  return one < other ? -1 : other < one ? 1 : 0;
}

}  // namespace

int CompareValues(const Value& vtOne, const Value& vtOther, platform::TextOrder texts) {
  // As texts lie among them in a source without types of its own for them.
  const bool bKinds = texts == platform::TextOrder::BeyondValues;
  const int nRank = RankOf(vtOne, bKinds);
  const int nOther = RankOf(vtOther, bKinds);
  if (nRank != nOther) return Order(nRank, nOther);
  if (nRank == kNullRank) return 0;
  if (!bKinds && IsOfTexts(vtOne) && vtOne.Kind() != vtOther.Kind()) {
    return CompareTexts(platform::ToText(vtOne), platform::ToText(vtOther), texts);
  }
  if (const auto number = NumberOf(vtOne)) {
    const int nOrder = Order(*number, *NumberOf(vtOther));
    const auto* one = vtOne.As<platform::Decimal>();
    const auto* other = vtOther.As<platform::Decimal>();
    return nOrder == 0 && one && other ? CompareDecimals(one->sDigits, other->sDigits) : nOrder;
  }
  if (const auto* text = vtOne.As<platform::Text>()) {
    return CompareTexts(*text, *vtOther.As<platform::Text>(), texts);
  }
  if (const auto* day = vtOne.As<platform::Date>())
    return Order(*day, *vtOther.As<platform::Date>());
  if (const auto* time = vtOne.As<platform::TimeOfDay>()) {
    return Order(*time, *vtOther.As<platform::TimeOfDay>());
  }
  if (const auto* bytes = vtOne.As<platform::Bytes>()) {
    return Order(*bytes, *vtOther.As<platform::Bytes>());
  }
  if (const auto* guid = vtOne.As<platform::Guid>()) {
    return Order(guid->bytes, vtOther.As<platform::Guid>()->bytes);
  }
  return 0;
}

ColumnFilter ColumnFilter::Read(const QString& sText, platform::ColumnIndex column,
                                const ColumnTakes& takes, const CellFormat& format) {
  ColumnFilter filter;
  filter.m_column = column;
  filter.m_sText = sText;
  const QString sTrimmed = sText.trimmed();
  if (sTrimmed.compare(u"null", Qt::CaseInsensitive) == 0) {
    filter.m_kind = Kind::Null;
    return filter;
  }
  if (sTrimmed.simplified().compare(u"not null", Qt::CaseInsensitive) == 0) {
    filter.m_kind = Kind::NotNull;
    return filter;
  }
  const ValueInput input(format.Zone());
  const auto read = [&](const QString& sValue) -> Value {
    const QString sTyped = sValue.trimmed();
    if (IsQuoted(sTyped, takes.type)) return Unquoted(sTyped).toStdString();
    return input.Read(sTyped.toStdString(), takes);
  };
  if (sTrimmed == kEmptyText && IsQuoted(sTrimmed, takes.type)) {
    filter.m_kind = Kind::Equal;
    filter.m_vtFrom = Value(platform::Text());
    return filter;
  }
  static constexpr const char* kOperators[] = {"<>", "<=", ">=", "=", "<", ">"};
  for (const QString sOperator : kOperators) {
    if (!sTrimmed.startsWith(sOperator)) continue;
    const Value vtValue = read(sTrimmed.mid(sOperator.size()));
    filter.m_vtFrom = filter.m_vtTo = vtValue;
    if (sOperator == u"<>") {
      filter.m_kind = vtValue.IsNull() ? Kind::NotNull : Kind::Unequal;
    } else if (sOperator == u"=") {
      filter.m_kind = vtValue.IsNull() ? Kind::Null : Kind::Equal;
    } else {
      filter.m_kind = Kind::Within;
      (sOperator.startsWith(u'<') ? filter.m_vtFrom : filter.m_vtTo) = Value();
      filter.m_bFromIncluded = filter.m_bToIncluded = sOperator.size() == 2;
    }
    return filter;
  }
  if (const qsizetype nDots = sTrimmed.indexOf(u".."); nDots > 0) {
    filter.m_kind = Kind::Within;
    filter.m_vtFrom = read(sTrimmed.left(nDots));
    filter.m_vtTo = read(sTrimmed.mid(nDots + 2));
    return filter;
  }
  filter.m_contained = TextSought(sText);
  return filter;
}

ColumnFilter ColumnFilter::Equal(platform::ColumnIndex column, const Value& vtValue,
                                 const CellFormat& format) {
  ColumnFilter filter;
  filter.m_column = column;
  filter.m_kind = vtValue.IsNull() ? Kind::Null : Kind::Equal;
  filter.m_vtFrom = vtValue;
  auto sShown = QString::fromStdString(ValueInput(format.Zone()).Shown(vtValue));
  const bool bText = vtValue.Kind() == ValueKind::Text;
  if (bText && (sShown.isEmpty() || sShown != sShown.trimmed() || sShown.startsWith(u'"'))) {
    sShown = u'"' + sShown.replace(u'"', QLatin1String("\"\"")) + u'"';
  }
  filter.m_sText = vtValue.IsNull() ? QStringLiteral("null") : u'=' + sShown;
  return filter;
}

bool ColumnFilter::Holds(const Value& vtValue, const CellFormat& format) const {
  switch (m_kind) {
    case Kind::Contains:
      return m_contained.IsIn(vtValue, format);
    case Kind::Null:
      return vtValue.IsNull();
    case Kind::NotNull:
      return !vtValue.IsNull();
    case Kind::Equal:
      return !vtValue.IsNull() && CompareValues(vtValue, m_vtFrom, m_order) == 0;
    case Kind::Unequal:
      return !vtValue.IsNull() && CompareValues(vtValue, m_vtFrom, m_order) != 0;
    case Kind::Within:
      break;
  }
  // A value of another kind than the bounds is not between them.
  const Value& vtBound = m_vtFrom.IsNull() ? m_vtTo : m_vtFrom;
  if (vtValue.IsNull() || RankOf(vtValue, true) != RankOf(vtBound, true)) return false;
  const int nFrom = m_vtFrom.IsNull() ? 1 : CompareValues(vtValue, m_vtFrom, m_order);
  const int nTo = m_vtTo.IsNull() ? -1 : CompareValues(vtValue, m_vtTo, m_order);
  return (nFrom > 0 || (nFrom == 0 && m_bFromIncluded)) && (nTo < 0 || (nTo == 0 && m_bToIncluded));
}

}  // namespace orvane::controls
