#include "console/tour/tour.h"

#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QTabBar>
#include <QTreeView>
#include <ostream>

#include "console/tour/printed_rows.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr int kPrintedRows = 10;
constexpr int kFolderLevel = 2;

Text TextOf(const QModelIndex& row) {
  return row.data().toString().toStdString();
}

/// 0 at the top: below it come the servers, their folders, catalogs and queries, tables.
int LevelOf(const QModelIndex& row) {
  return row.parent().isValid() ? LevelOf(row.parent()) + 1 : 0;
}

/// The tip of an item that could not be opened says so.
bool LooksFailed(const QModelIndex& row) {
  return row.data(Qt::ToolTipRole).toString().contains("could not be opened");
}

}  // namespace

Tour::Tour(QWidget& window, const QDir& folder, std::ostream& out)
    : m_window(window), m_folder(folder), m_out(out), m_hands(window, folder) {}

void Tour::MakeFolder() {
  if (!m_folder.mkpath(".")) {
    throw Failure(failure::kStorage,
                  "The folder " + m_folder.path().toStdString() + " cannot be made.", "tour");
  }
  for (const auto& sOld : m_folder.entryList({"?-*.png", "copy.orvc"})) m_folder.remove(sOld);
}

std::vector<Tour::Row> Tour::RowsBeneath(const Row& row) const {
  std::vector<Row> rows;
  const auto* model = m_tree->model();
  for (int n = 0; n < model->rowCount(row); ++n) rows.emplace_back(model->index(n, 0, row));
  return rows;
}

Tour::Row Tour::Beneath(const Row& row, const QString& sText) const {
  for (const auto& below : RowsBeneath(row)) {
    if (below.data().toString() == sText) return below;
  }
  return {};
}

std::vector<Tour::Row> Tour::Tables(const Row& root) const {
  std::vector<Row> tables;
  for (const auto& server : RowsBeneath(root)) {
    const auto catalogs = Beneath(server, "Catalogs");
    if (!catalogs.isValid()) continue;
    for (const auto& catalog : RowsBeneath(catalogs)) {
      for (const auto& table : RowsBeneath(catalog)) tables.push_back(table);
    }
  }
  return tables;
}

std::vector<Tour::Row> Tour::Queries(const Row& root) const {
  std::vector<Row> queries;
  for (const auto& server : RowsBeneath(root)) {
    const auto folder = Beneath(server, "Queries");
    if (!folder.isValid()) continue;
    for (const auto& query : RowsBeneath(folder)) queries.push_back(query);
  }
  return queries;
}

Tour::Row Tour::ChosenTable(const Row& root) const {
  const auto tables = Tables(root);
  if (tables.empty()) {
    throw Failure(failure::kObjectNotSet, "The servers have no table.", "tour");
  }
  // This machine's own counters tell more than any other table, where they are recorded.
  for (const auto& table : tables) {
    if (TextOf(table) == "Data" && TextOf(table.parent()) == "Machine") return table;
  }
  return tables.front();
}

void Tour::Select(const Row& row) {
  m_tree->scrollTo(row);
  const auto place = m_tree->visualRect(row);
  m_hands.Click(*m_tree->viewport(), {place.left() + 8, place.center().y()});
  m_hands.Rest();
  const auto* name = m_window.findChild<QLabel*>("resultName");
  m_hands.WaitFor("Selecting an item", [&] { return name->text() == row.data().toString(); });
}

void Tour::Expand(const Row& row) {
  Select(row);
  const auto isOpen = [&] {
    if (m_tree->model()->rowCount(row) > 0) return m_tree->isExpanded(row);
    return !m_tree->model()->hasChildren(row) && !Page().startsWith("Not opened yet");
  };
  if (isOpen()) return;
  m_hands.Press(*m_tree, Qt::Key_Return);
  m_hands.Rest();
  m_hands.WaitFor("Expanding an item", [&] { return isOpen() || LooksFailed(row); });
  if (LooksFailed(row)) {
    throw Failure(failure::kComponent, TextOf(row) + " could not be opened.", "tour");
  }
}

void Tour::ExpandEverything(const Row& row) {
  // The folders of a server may have no expand mark until they are opened; all else without one is
  // a table or a query.
  if (!m_tree->model()->hasChildren(row) && LevelOf(row) != kFolderLevel) return;
  Expand(row);
  for (const auto& below : RowsBeneath(row)) ExpandEverything(below);
}

void Tour::PrintTree(const Row& row, int nLevel) {
  m_out << Text(static_cast<std::size_t>(nLevel) * 2, ' ') << TextOf(row) << '\n';
  for (const auto& below : RowsBeneath(row)) PrintTree(below, nLevel + 1);
}

QAbstractItemView* Tour::Contents() const {
  const auto* pane = m_window.findChild<QWidget*>("resultPane");
  for (auto* view : pane->findChildren<QAbstractItemView*>()) {
    const bool bRows = view->objectName() == "rows" || view->inherits("QTreeView");
    if (bRows && view->isVisible() && view->model()) return view;
  }
  return nullptr;
}

QString Tour::Page() const {
  QStringList sentences;
  const auto* page = m_window.findChild<QWidget*>("messagePage");
  for (const auto* label : page->findChildren<QLabel*>()) {
    if (page->isVisible() && label->isVisible() && !label->text().isEmpty()) {
      // Long words carry marks, not seen, of where a line may end.
      sentences << label->text().remove(QChar(0x200B));
    }
  }
  return sentences.join(' ');
}

void Tour::PrintGrid() {
  const auto* grid = Contents();
  if (!grid || grid->model()->rowCount() == 0) {
    throw Failure(failure::kObjectNotSet, "The grid shows no rows.", "tour");
  }
  PrintRows(m_out, *grid->model(), kPrintedRows);
  m_out << "  " << grid->model()->rowCount() << " rows\n";
}

void Tour::ShowTable(const Row& table) {
  Select(table);
  m_out << "\nTable " << TextOf(table.parent()) << ".." << TextOf(table) << '\n';
  PrintGrid();
  m_hands.Picture("3-table.png");
}

void Tour::ShowStructure(const Row& table) {
  auto* tabs = m_window.findChild<QTabBar*>("viewTabs");
  for (int n = 0; n < tabs->count(); ++n) {
    if (tabs->tabText(n) == "Structure") m_hands.Click(*tabs, tabs->tabRect(n).center());
  }
  m_hands.Rest();
  m_hands.WaitFor("Changing the view", [&] {
    const auto* list = Contents();
    return list && list->model()->headerData(0, Qt::Horizontal).toString() == "Column name";
  });
  m_out << "\nStructure of " << TextOf(table) << '\n';
  const auto& model = *Contents()->model();
  PrintRows(m_out, model, model.rowCount());
  m_hands.Picture("4-structure.png");
}

void Tour::ShowQuery(const Row& query) {
  Select(query);
  m_out << "\nQuery \"" << TextOf(query) << "\"\n";
  PrintGrid();
  m_hands.Picture("5-query.png");
}

void Tour::SaveCopy() {
  const auto sCopy = m_folder.absoluteFilePath("copy.orvc");
  m_hands.NextFile(sCopy);
  m_hands.Choose(*m_window.findChild<QMenuBar*>(), "File", QString::fromUtf8("Save As…"));
  m_hands.WaitFor("Saving a copy", [&] { return QFile::exists(sCopy); });
}

void Tour::Run(const std::function<bool()>& open) {
  MakeFolder();
  const bool bOpened = open();
  m_hands.Check("Opening the document");
  if (!bOpened) throw Failure(failure::kDocument, "Nothing was opened.", "tour");
  m_hands.Rest();
  m_tree = m_window.findChild<QTreeView*>("scopePane");
  const Row root = m_tree->model()->index(0, 0);
  if (!root.isValid()) {
    throw Failure(failure::kComponent, "The tree is empty: " + Page().toStdString(), "tour");
  }
  ExpandEverything(root);
  Select(root);
  PrintTree(root, 0);
  m_hands.Picture("2-tree.png");

  const auto table = ChosenTable(root);
  ShowTable(table);
  ShowStructure(table);
  const auto queries = Queries(root);
  if (queries.empty()) {
    throw Failure(failure::kObjectNotSet, "The servers have no named query.", "tour");
  }
  ShowQuery(queries.front());
  SaveCopy();
  m_out << "\nSaved, with pictures, in " << m_folder.path().toStdString() << '\n' << std::flush;
}

}  // namespace orvane::console
