#include "controls/view/row_model.h"

#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "controls/values/tip_text.h"
#include "platform/utf8.h"

namespace orvane::controls {

using platform::RowIndex;
using platform::Value;

namespace {

/// Of so many those who look are told one by one.
constexpr std::size_t kFewRows = 16;

QVariant TypedVariant(const Value& vtValue, const CellFormat& format) {
  if (vtValue.IsNull()) return {};
  if (const auto* b = vtValue.As<bool>()) return *b;
  if (const auto* l = vtValue.As<std::int32_t>()) return static_cast<int>(*l);
  if (const auto* ll = vtValue.As<std::int64_t>()) return static_cast<qlonglong>(*ll);
  if (const auto* d = vtValue.As<double>()) return *d;
  if (const auto* bytes = vtValue.As<platform::Bytes>()) {
    return QByteArray(reinterpret_cast<const char*>(bytes->data()),
                      static_cast<qsizetype>(bytes->size()));
  }
  const auto* sText = vtValue.As<platform::Text>();
  if (sText && platform::IsUtf8(*sText)) return QString::fromStdString(*sText);
  // What the toolkit has no exact type for goes as its whole text: a decimal is no double, and a
  // timestamp has more digits than a QDateTime. The toolkit must not be told of a type of this
  // library: it would remember it when the library has gone.
  return format.Whole(vtValue);
}

platform::Text ZoneName(const zones::TimeZone& zone) {
  return zone.Name() == "Local" ? zone.NameInUse() : zone.Name();
}

}  // namespace

void RowModel::Recordset(platform::RecordsetPtr rs, CellFormat format) {
  beginResetModel();
  m_recordset = std::move(rs);
  m_format = std::move(format);
  m_newRows = std::exchange(m_nextNewRows, {});
  m_order.reset();
  FindGonePlaces();
  m_fractions.clear();
  m_nPlaces = CountPlaces();
  m_bEmptyRow = OffersNewRow();
  endResetModel();
}

bool RowModel::AllRowsFit() const {
  return !m_recordset || m_recordset->RecordCount() <= kMaxRows;
}

bool RowModel::FitTimes(int nFirst, int nEnd) {
  using platform::DataType;
  constexpr int kMostDigits = 6;
  bool bMore = false;
  m_fractions.resize(static_cast<std::size_t>(columnCount()));
  for (int nColumn = 0; nColumn < columnCount(); ++nColumn) {
    const DataType type = m_recordset->FieldAt(nColumn).Type();
    const bool bTimes =
        type == DataType::DBTimeStamp || type == DataType::WallTime || type == DataType::DBTime;
    if (!bTimes) continue;
    int& nFraction = m_fractions[static_cast<std::size_t>(nColumn)];
    const int nBefore = nFraction;
    for (int n = nFirst; n < std::min(nEnd, m_nPlaces) && nFraction < kMostDigits; ++n) {
      nFraction = std::max(nFraction, CellFormat::FractionOf(ValueAt(n, nColumn)));
    }
    bMore = bMore || nFraction > nBefore;
  }
  return bMore;
}

int RowModel::CountPlaces() const {
  if (!m_recordset) return 0;
  const RowIndex rows = m_recordset->RecordCount();
  const RowIndex ordered = m_order ? m_order->Count(rows) : rows;
  return static_cast<int>(std::min(ordered - m_gone.Count(), kMaxRows));
}

template <class Rows>
std::vector<RowIndex> RowModel::GonePlacesOf(const Rows& rows) const {
  std::vector<RowIndex> places;
  const std::set<RowIndex>& gone = m_editing->GoneRows();
  for (const RowIndex row : rows) {
    if (!gone.contains(row)) continue;
    if (const auto place = OrderedPlaceOf(row)) places.push_back(*place);
  }
  std::ranges::sort(places);
  return places;
}

void RowModel::FindGonePlaces() {
  m_gone = {};
  m_nGoneRows = 0;
  if (!m_recordset || !m_editing) return;
  m_nGoneRows = m_editing->GoneRows().size();
  m_gone = GonePlaces(GonePlacesOf(m_editing->GoneRows()));
}

void RowModel::TakeOut(std::vector<RowIndex> gone) {
  m_nGoneRows = m_editing->GoneRows().size();
  std::erase_if(gone, [this](RowIndex place) { return m_gone.Contains(place); });
  for (std::span<const RowIndex> left(gone); !left.empty();) {
    // Those that stand together go together.
    std::size_t count = 1;
    while (count < left.size() && left[count] == left[count - 1] + 1) ++count;
    const auto nFirst = static_cast<int>(m_gone.Seen(left.front()).value_or(m_nPlaces));
    // One that came since stands where nobody has been told of a row yet.
    const int nLast = std::min(nFirst + static_cast<int>(count), m_nPlaces) - 1;
    if (nFirst <= nLast) beginRemoveRows({}, nFirst, nLast);
    m_gone.Add(left.first(count));
    if (nFirst <= nLast) {
      m_nPlaces -= nLast - nFirst + 1;
      endRemoveRows();
    }
    left = left.subspan(count);
  }
}

void RowModel::TakeRowsIn() {
  if (m_editing && m_editing->GoneRows().size() != m_nGoneRows) {
    TakeOut(GonePlacesOf(m_editing->GoneRows()));
  }
  FollowCount();
}

void RowModel::TakeRowsIn(std::span<const RowIndex> changed) {
  if (m_editing && m_editing->GoneRows().size() != m_nGoneRows) TakeOut(GonePlacesOf(changed));
  FollowCount();
}

void RowModel::FollowCount() {
  const int nPlaces = CountPlaces();
  if (nPlaces > m_nPlaces) {
    // What was typed into the empty row has made it the new one: another stands behind it.
    const int nEmpty = rowCount() - m_nPlaces;
    beginInsertRows({}, m_nPlaces + nEmpty, nPlaces - 1 + nEmpty);
    m_nPlaces = nPlaces;
    endInsertRows();
  } else if (nPlaces < m_nPlaces) {
    beginRemoveRows({}, nPlaces, m_nPlaces - 1);
    m_nPlaces = nPlaces;
    endRemoveRows();
  }
  if (m_bEmptyRow == OffersNewRow()) return;
  if (m_bEmptyRow) {
    beginRemoveRows({}, m_nPlaces, m_nPlaces);
    m_bEmptyRow = false;
    endRemoveRows();
  } else {
    beginInsertRows({}, m_nPlaces, m_nPlaces);
    m_bEmptyRow = true;
    endInsertRows();
  }
}

bool RowModel::OffersNewRow() const {
  return m_recordset && m_editing && m_editing->OffersNewRow();
}

void RowModel::Order(std::shared_ptr<const RowOrder> order) {
  if (m_editing) m_editing->TakeTyped();
  beginResetModel();
  m_order = std::move(order);
  FindGonePlaces();
  m_nPlaces = CountPlaces();
  m_bEmptyRow = OffersNewRow();
  endResetModel();
}

RowIndex RowModel::RecordRow(int nPlace) const {
  return RecordRowAt(m_order.get(), m_gone, nPlace);
}

std::function<RowIndex(int)> RowModel::RecordRows() const {
  return [order = m_order, gone = m_gone](int nPlace) {
    return RecordRowAt(order.get(), gone, nPlace);
  };
}

std::function<bool(RowIndex)> RowModel::SeenRows() const {
  const RowIndex rows = m_recordset ? m_recordset->RecordCount() : 0;
  if (m_gone.Empty() && (!m_order || m_order->Count(rows) == rows)) return {};
  return [order = m_order, gone = m_gone](RowIndex row) {
    const std::optional<RowIndex> place = order ? order->PlaceOf(row) : row;
    return place && !gone.Contains(*place);
  };
}

RowIndex RowModel::RecordRowAt(const RowOrder* order, const GonePlaces& gone, int nPlace) {
  const RowIndex place = gone.Whole(nPlace);
  return order ? order->RecordRow(place) : place;
}

std::optional<RowIndex> RowModel::OrderedPlaceOf(RowIndex row) const {
  return m_order ? m_order->PlaceOf(row) : row;
}

int RowModel::PlaceOf(RowIndex row) const {
  const std::optional<RowIndex> ordered = OrderedPlaceOf(row);
  const auto place = ordered ? m_gone.Seen(*ordered) : std::nullopt;
  return place && *place < m_nPlaces ? static_cast<int>(*place) : -1;
}

void RowModel::Editing(RowEditing* editing) {
  beginResetModel();
  m_editing = editing;
  m_bEmptyRow = OffersNewRow();
  endResetModel();
}

void RowModel::TellOfChange(std::span<const RowIndex> rows) {
  if (columnCount() == 0 || m_nPlaces == 0) return;
  // Those in sight are painted anew either way.
  if (rows.size() > kFewRows) return TellOfPlaces(0, m_nPlaces - 1);
  for (const RowIndex row : rows) {
    const int nPlace = PlaceOf(row);
    if (nPlace >= 0) TellOfPlaces(nPlace, nPlace);
  }
}

void RowModel::TellOfPlaces(int nFirst, int nLast) {
  emit dataChanged(index(nFirst, 0), index(nLast, columnCount() - 1));
  emit headerDataChanged(Qt::Vertical, nFirst, nLast);
}

bool RowModel::IsNew(int nPlace) const {
  return !m_newRows.empty() && !IsEmptyRow(nPlace) && m_newRows.contains(RecordRow(nPlace));
}

Cell RowModel::CellAt(int nPlace, int nColumn) const {
  const platform::DataType type = m_recordset->FieldAt(nColumn).Type();
  if (IsEmptyRow(nPlace)) return {{}, CellFormat::Alignment(Value(), type)};
  const RowIndex row = RecordRow(nPlace);
  const Value vtValue = m_recordset->ValueAt(row, nColumn);
  const platform::RowState state = m_recordset->StateAt(row);
  if (state == platform::RowState::New && !m_recordset->IsEdited(row, nColumn)) {
    // It is left to the server, whose default need not be null.
    return {{}, CellFormat::Alignment(vtValue, type)};
  }
  const auto column = static_cast<std::size_t>(nColumn);
  const int nFraction = column < m_fractions.size() ? m_fractions[column] : 0;
  const Qt::Alignment alignment = CellFormat::Alignment(vtValue, type);
  return {m_format.Shown(vtValue, nFraction),
          alignment,
          vtValue.IsNull(),
          state != platform::RowState::Fetched && m_recordset->IsEdited(row, nColumn),
          state == platform::RowState::Deleted,
          alignment.testFlag(Qt::AlignRight) && !vtValue.IsNull()};
}

Value RowModel::ValueAt(int nPlace, int nColumn) const {
  return IsEmptyRow(nPlace) ? Value() : m_recordset->ValueAt(RecordRow(nPlace), nColumn);
}

platform::RowState RowModel::StateAt(int nPlace) const {
  return IsEmptyRow(nPlace) ? platform::RowState::New : m_recordset->StateAt(RecordRow(nPlace));
}

QString RowModel::ColumnName(int nColumn) const {
  return QString::fromStdString(m_recordset->FieldAt(nColumn).Name());
}

int RowModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || !m_recordset) return 0;
  return m_nPlaces + (m_bEmptyRow ? 1 : 0);
}

int RowModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || !m_recordset ? 0 : m_recordset->FieldCount();
}

QVariant RowModel::data(const QModelIndex& index, int nRole) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  switch (nRole) {
    case Qt::DisplayRole:
      return CellAt(index.row(), index.column()).sText;
    case Qt::EditRole:
      return TypedVariant(ValueAt(index.row(), index.column()), m_format);
    case Qt::TextAlignmentRole:
      return static_cast<int>(CellAt(index.row(), index.column()).alignment);
    case Qt::FontRole: {
      if (!ValueAt(index.row(), index.column()).IsNull()) return {};
      QFont font;
      font.setItalic(true);
      return font;
    }
    case Qt::ForegroundRole:
      if (!ValueAt(index.row(), index.column()).IsNull()) return {};
      return QGuiApplication::palette().placeholderText();
    case Qt::AccessibleDescriptionRole:
      return Spoken(index);
    default:
      return {};
  }
}

QString RowModel::Spoken(const QModelIndex& index) const {
  const Cell cell = CellAt(index.row(), index.column());
  QStringList parts = {ColumnName(index.column())};
  if (IsEmptyRow(index.row())) {
    parts << QStringLiteral("new row");
  } else {
    parts << QStringLiteral("row %1").arg(index.row() + 1);
    // Spoken, the word NULL could be a text of that name.
    if (cell.bNull) parts << QStringLiteral("no value");
    if (IsNew(index.row())) parts << QStringLiteral("came new");
    if (cell.bEdited) parts << QStringLiteral("changed");
    if (cell.bDeleted) parts << QStringLiteral("to be deleted");
    if (const QString sRemark = RemarkAt(index.row()); !sRemark.isEmpty()) {
      parts << QStringLiteral("not stored: ") + sRemark;
    }
  }
  return parts.join(QStringLiteral(", "));
}

QString RowModel::RemarkAt(int nPlace) const {
  return m_editing && nPlace < m_nPlaces ? m_editing->RemarkOf(RecordRow(nPlace)) : QString();
}

QString RowModel::MarkOf(int nPlace) const {
  if (nPlace >= m_nPlaces) return {};
  if (!RemarkAt(nPlace).isEmpty()) return QStringLiteral("!");
  switch (StateAt(nPlace)) {
    case platform::RowState::Edited:
      return QStringLiteral("\u2022");
    case platform::RowState::New:
      return QStringLiteral("+");
    case platform::RowState::Deleted:
      return QStringLiteral("\u00d7");
    case platform::RowState::Fetched:
      break;
  }
  return {};
}

bool RowModel::Edit(const QModelIndex& index, const Value& vtValue) {
  if (!flags(index).testFlag(Qt::ItemIsEditable)) return false;
  m_editing->Edit(RecordRow(index.row()), index.column(), vtValue);
  return true;
}

QVariant RowModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
  if (orientation == Qt::Vertical) {
    if (nRole == Qt::DisplayRole) {
      return IsEmptyRow(nSection) ? QVariant(QStringLiteral("*")) : QVariant(nSection + 1);
    }
    if (nRole == Qt::DecorationRole) return MarkOf(nSection);
    if (nRole == Qt::ToolTipRole) return RemarkAt(nSection).toHtmlEscaped();
    if (nRole == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (nRole == kNewRole && IsNew(nSection)) return true;
    return {};
  }
  if (nSection < 0 || nSection >= columnCount()) return {};
  const platform::Field& field = m_recordset->FieldAt(nSection);
  switch (nRole) {
    case Qt::DisplayRole:
      return m_format.Shown(Value(field.Name()));
    case Qt::TextAlignmentRole:
      return static_cast<int>(AlignmentOf(field.Type()));
    case Qt::ToolTipRole: {
      QString sType = TypeName(field.Type());
      if (!field.Nullable()) sType += QStringLiteral(", never null");
      if (field.Type() == platform::DataType::DBTimeStamp) {
        sType += QStringLiteral("<br>Shown in the time zone ") +
                 QString::fromStdString(ZoneName(m_format.Zone())).toHtmlEscaped();
      } else if (field.Type() == platform::DataType::WallTime) {
        sType += QStringLiteral(
                     "<br>Shown as it is stored; for ranges of time and trends it counts as "
                     "the clocks of ") +
                 QString::fromStdString(ZoneName(m_format.Zone())).toHtmlEscaped();
      }
      return TipText(ColumnName(nSection), "To see it whole, copy with Ctrl+Shift+C.") +
             QStringLiteral("<div>%1</div>").arg(sType);
    }
    default:
      return {};
  }
}

Qt::ItemFlags RowModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  const bool bEditable = m_editing && m_editing->CanEdit(RecordRow(index.row()), index.column());
  return bEditable ? flags | Qt::ItemIsEditable : flags;
}

}  // namespace orvane::controls
