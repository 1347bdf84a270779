#include "console/session/result_list_model.h"

#include "console/session/item_look.h"

namespace orvane::console {

using platform::Long;
using platform::Text;

ResultListModel::ResultListModel(ScopeTree& tree, HostedResultView& view, QObject* parent)
    : QAbstractTableModel(parent), m_tree(tree), m_view(view), m_bOwnRows(view.Rows().Count() > 0) {
  for (const auto& column : view.Description().columns) {
    m_columns.push_back({QString::fromStdString(column.sText), column.lWidth});
  }
  if (m_columns.empty()) m_columns.push_back({tr("Name"), 200});
  if (!m_bOwnRows) {
    AddColumnsOfRows();
    FollowTree();
  }
  m_view.Rows().OnChange([this] {
    beginResetModel();
    m_bOwnRows = true;
    endResetModel();
  });
}

ResultListModel::~ResultListModel() {
  m_view.Rows().OnChange({});
}

bool ResultListModel::IsOwnParent(const QModelIndex& parent) const {
  return !m_bOwnRows && parent.isValid() && parent == m_tree.IndexOf(*m_view.Item());
}

void ResultListModel::FollowTree() {
  connect(&m_tree, &QAbstractItemModel::rowsAboutToBeInserted, this,
          [this](const QModelIndex& parent, int iFirst, int iLast) {
            if (IsOwnParent(parent)) beginInsertRows({}, iFirst, iLast);
          });
  connect(&m_tree, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& parent) {
    if (!IsOwnParent(parent)) return;
    endInsertRows();
    AddColumnsOfRows();
  });
  connect(&m_tree, &QAbstractItemModel::rowsAboutToBeRemoved, this,
          [this](const QModelIndex& parent, int iFirst, int iLast) {
            if (IsOwnParent(parent)) beginRemoveRows({}, iFirst, iLast);
          });
  connect(&m_tree, &QAbstractItemModel::rowsRemoved, this, [this](const QModelIndex& parent) {
    if (IsOwnParent(parent)) endRemoveRows();
  });
  connect(&m_tree, &QAbstractItemModel::dataChanged, this,
          [this](const QModelIndex& first, const QModelIndex& last) {
            if (!IsOwnParent(first.parent())) return;
            AddColumnsOfRows();
            emit dataChanged(index(first.row(), 0), index(last.row(), columnCount() - 1));
          });
  connect(&m_tree, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
  connect(&m_tree, &QAbstractItemModel::modelReset, this, [this] { endResetModel(); });
}

void ResultListModel::AddColumnsOfRows() {
  if (rowCount() == 0) return;
  // All rows of a list are of one kind, so the first speaks for the others.
  const auto& headers = m_view.Item()->Children().front()->Headers();
  if (headers.size() <= m_columns.size()) return;
  beginInsertColumns({}, static_cast<int>(m_columns.size()), static_cast<int>(headers.size()) - 1);
  for (auto n = m_columns.size(); n < headers.size(); ++n) {
    m_columns.push_back({QString::fromStdString(headers[n].sText), headers[n].lWidth});
  }
  endInsertColumns();
}

ScopeTreeItemPtr ResultListModel::ItemAt(int iRow) const {
  if (m_bOwnRows || iRow < 0 || iRow >= rowCount()) return nullptr;
  return m_view.Item()->Children()[static_cast<std::size_t>(iRow)];
}

Long ResultListModel::ImageAt(int iRow) const {
  if (m_bOwnRows) return m_view.Rows().Items()[static_cast<std::size_t>(iRow)].Icon();
  return m_view.Item()->Children()[static_cast<std::size_t>(iRow)]->Image();
}

const std::vector<Text>& ResultListModel::TextsAt(int iRow) const {
  if (m_bOwnRows) return m_view.Rows().Items()[static_cast<std::size_t>(iRow)].SubItemTexts();
  return m_view.Item()->Children()[static_cast<std::size_t>(iRow)]->SubItemTexts();
}

int ResultListModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  if (m_bOwnRows) return m_view.Rows().Count();
  if (m_view.Item()->IsRemoved()) return 0;
  return m_tree.rowCount(m_tree.IndexOf(*m_view.Item()));
}

int ResultListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ResultListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const int iRow = index.row();
  switch (role) {
    case Qt::DisplayRole: {
      const auto& texts = TextsAt(iRow);
      const auto nColumn = static_cast<std::size_t>(index.column());
      if (nColumn < texts.size()) return QString::fromStdString(texts[nColumn]);
      if (nColumn > 0) return {};
      // A row without texts of its own still has a name.
      if (m_bOwnRows) {
        return QString::fromStdString(m_view.Rows().Items()[static_cast<std::size_t>(iRow)].Text());
      }
      return QString::fromStdString(ItemAt(iRow)->Name());
    }
    case Qt::DecorationRole: {
      const auto* look = m_tree.Look();
      if (index.column() != 0 || !look) return {};
      const auto item = ItemAt(iRow);
      return item ? look->OfItem(*item, role) : look->Picture(ImageAt(iRow));
    }
    case Qt::ToolTipRole: {
      // A text that its column cuts is read here.
      const auto sText = data(index, Qt::DisplayRole).toString();
      const auto* look = m_tree.Look();
      return look && !sText.isEmpty() ? look->ToolTip(sText) : QVariant();
    }
    default:
      return {};
  }
}

QVariant ResultListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole) return m_columns[static_cast<std::size_t>(section)].sText;
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignLeft | Qt::AlignVCenter);
  return {};
}

}  // namespace orvane::console
