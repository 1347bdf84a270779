#include "controls/row_model.h"

#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "controls/tip_text.h"
#include "platform/utf8.h"

namespace orvane::controls {

using platform::RowIndex;
using platform::Value;

namespace {

QVariant TypedVariant(const Value& vtValue) {
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
  // What the toolkit has no exact type for goes as it is: a decimal is no double, a timestamp has
  // more digits than a QDateTime, and what is shown of either is not the value.
  return QVariant::fromValue(vtValue);
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
  m_nPlaces = CountPlaces();
  endResetModel();
}

bool RowModel::AllRowsFit() const {
  return !m_recordset || m_recordset->RecordCount() <= kMaxRows;
}

int RowModel::CountPlaces() const {
  if (!m_recordset) return 0;
  const RowIndex rows = m_recordset->RecordCount();
  return static_cast<int>(std::min(m_order ? m_order->Count(rows) : rows, kMaxRows));
}

void RowModel::TakeRowsIn() {
  const int nPlaces = CountPlaces();
  if (nPlaces > m_nPlaces) {
    beginInsertRows({}, m_nPlaces, nPlaces - 1);
    m_nPlaces = nPlaces;
    endInsertRows();
  } else if (nPlaces < m_nPlaces) {
    beginRemoveRows({}, nPlaces, m_nPlaces - 1);
    m_nPlaces = nPlaces;
    endRemoveRows();
  }
}

void RowModel::Order(std::shared_ptr<const RowOrder> order) {
  beginResetModel();
  m_order = std::move(order);
  m_nPlaces = CountPlaces();
  endResetModel();
}

RowIndex RowModel::RecordRow(int nPlace) const {
  return m_order ? m_order->RecordRow(nPlace) : nPlace;
}

int RowModel::PlaceOf(RowIndex row) const {
  const std::optional<RowIndex> place = m_order ? m_order->PlaceOf(row) : row;
  return place && *place < m_nPlaces ? static_cast<int>(*place) : -1;
}

void RowModel::Editing(RowEditing* editing) {
  beginResetModel();
  m_editing = editing;
  endResetModel();
}

void RowModel::TellOfChange(RowIndex row) {
  const int nPlace = PlaceOf(row);
  if (nPlace < 0 || columnCount() == 0) return;
  emit dataChanged(index(nPlace, 0), index(nPlace, columnCount() - 1));
  emit headerDataChanged(Qt::Vertical, nPlace, nPlace);
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
  return {m_format.Shown(vtValue), CellFormat::Alignment(vtValue, type), vtValue.IsNull(),
          state != platform::RowState::Fetched && m_recordset->IsEdited(row, nColumn),
          state == platform::RowState::Deleted};
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
  return m_nPlaces + (m_editing && m_editing->OffersNewRow() ? 1 : 0);
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
      return TypedVariant(ValueAt(index.row(), index.column()));
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
    if (cell.bEdited) parts << QStringLiteral("changed");
    if (cell.bDeleted) parts << QStringLiteral("to be deleted");
  }
  return parts.join(QStringLiteral(", "));
}

bool RowModel::setData(const QModelIndex& index, const QVariant& value, int nRole) {
  if (nRole != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable)) return false;
  if (!value.canConvert<Value>()) return false;
  m_editing->Edit(RecordRow(index.row()), index.column(), value.value<Value>());
  return true;
}

QVariant RowModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
  if (orientation == Qt::Vertical) {
    if (nRole == Qt::DisplayRole) {
      return IsEmptyRow(nSection) ? QVariant(QStringLiteral("*")) : QVariant(nSection + 1);
    }
    if (nRole == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    if (nRole == kNewRole && IsNew(nSection)) return true;
    if (nRole == Qt::AccessibleDescriptionRole && IsNew(nSection)) return QStringLiteral("New");
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
