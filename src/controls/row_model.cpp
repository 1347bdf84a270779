#include "controls/row_model.h"

#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "controls/tip_text.h"
#include "platform/utf8.h"

namespace orvane::controls {

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
  endResetModel();
}

bool RowModel::AllRowsFit() const {
  return !m_recordset || m_recordset->RecordCount() <= kMaxRows;
}

Cell RowModel::CellAt(int nRow, int nColumn) const {
  const Value vtValue = ValueAt(nRow, nColumn);
  return {m_format.Shown(vtValue),
          CellFormat::Alignment(vtValue, m_recordset->FieldAt(nColumn).Type()), vtValue.IsNull()};
}

Value RowModel::ValueAt(int nRow, int nColumn) const {
  return m_recordset->ValueAt(nRow, nColumn);
}

QString RowModel::ColumnName(int nColumn) const {
  return QString::fromStdString(m_recordset->FieldAt(nColumn).Name());
}

int RowModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || !m_recordset) return 0;
  return static_cast<int>(std::min(m_recordset->RecordCount(), kMaxRows));
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
      // Spoken, the word NULL could be a text of that name.
      if (!ValueAt(index.row(), index.column()).IsNull()) return {};
      return QStringLiteral("No value");
    default:
      return {};
  }
}

QVariant RowModel::headerData(int nSection, Qt::Orientation orientation, int nRole) const {
  if (orientation == Qt::Vertical) {
    if (nRole == Qt::DisplayRole) return nSection + 1;
    if (nRole == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
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
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

}  // namespace orvane::controls
