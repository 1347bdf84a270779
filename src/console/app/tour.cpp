#include "console/app/tour.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QTabBar>
#include <QTableView>
#include <QTimer>
#include <ostream>

#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr qint64 kPatienceMilliseconds = 120'000;
constexpr int kPrintedRows = 10;

void PressKey(QWidget* widget, Qt::Key key) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
  }
}

void Click(QWidget* widget, const QPoint& at) {
  const auto global = widget->mapToGlobal(at);
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
    QMouseEvent event(type, at, global, Qt::LeftButton,
                      type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
  }
}

/// One line of columns that stand under each other.
Text Line(const std::vector<Text>& texts, const std::vector<std::size_t>& widths) {
  Text sLine = " ";
  for (std::size_t n = 0; n < texts.size(); ++n) {
    const auto sText = QString::fromStdString(texts[n]);
    sLine += " " + sText.leftJustified(static_cast<int>(widths[n])).toStdString() + " ";
  }
  while (sLine.ends_with(' ')) sLine.pop_back();
  return sLine;
}

void PrintColumns(std::ostream& out, const std::vector<std::vector<Text>>& lines) {
  std::vector<std::size_t> widths;
  for (const auto& line : lines) {
    widths.resize(std::max(widths.size(), line.size()));
    for (std::size_t n = 0; n < line.size(); ++n) {
      const auto nLength = static_cast<std::size_t>(QString::fromStdString(line[n]).size());
      widths[n] = std::max(widths[n], nLength);
    }
  }
  for (const auto& line : lines) out << Line(line, widths) << '\n';
}

}  // namespace

Tour::Tour(MainWindow& window, const QDir& folder, std::ostream& out)
    : m_window(window), m_folder(folder), m_out(out) {}

void Tour::WaitFor(const char* sWhat, const Condition& condition) {
  QElapsedTimer elapsed;
  elapsed.start();
  QEventLoop loop;
  QTimer timer;
  connect(&timer, &QTimer::timeout, &loop, [&] {
    const bool bDone = !m_window.Session().IsBusy() && condition();
    if (bDone || !m_sFailure.empty() || elapsed.elapsed() > kPatienceMilliseconds) loop.quit();
  });
  timer.start(5);
  loop.exec();
  if (!m_sFailure.empty()) {
    throw Failure(failure::kComponent, Text(sWhat) + " failed: " + m_sFailure, "tour");
  }
  if (!condition()) {
    throw Failure(failure::kTimeout, Text(sWhat) + " took too long.", "tour");
  }
}

void Tour::AnswerDialogs() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog) return;
  if (const auto* box = qobject_cast<QMessageBox*>(dialog)) {
    if (m_sFailure.empty()) m_sFailure = box->text().toStdString();
    PressKey(dialog, Qt::Key_Escape);
    return;
  }
  // The logon dialog, answered with what it proposes.
  if (!m_folder.exists("1-logon.png")) dialog->grab().save(m_folder.filePath("1-logon.png"));
  for (auto* button : dialog->findChildren<QPushButton*>()) {
    if (button->isDefault() && button->isEnabled()) {
      Click(button, button->rect().center());
      return;
    }
  }
  m_sFailure = "A dialog came up that cannot be answered.";
  dialog->reject();
}

void Tour::Picture(const char* sName) {
  QCoreApplication::processEvents();
  const auto sPath = m_folder.filePath(QString::fromLatin1(sName));
  if (!m_window.grab().save(sPath)) {
    throw Failure(failure::kStorage, "The picture " + sPath.toStdString() + " cannot be written.",
                  "tour");
  }
}

void Tour::Select(const ScopeTreeItemPtr& item) {
  auto& pane = m_window.Scope();
  const auto index = m_window.Session().Tree().IndexOf(*item);
  pane.scrollTo(index);
  const auto rect = pane.visualRect(index);
  Click(pane.viewport(), {rect.left() + 8, rect.center().y()});
  WaitFor("Selecting an item", [&] { return m_window.Session().Selected() == item; });
}

void Tour::Expand(const ScopeTreeItemPtr& item) {
  Select(item);
  PressKey(&m_window.Scope(), Qt::Key_Return);
  WaitFor("Expanding an item",
          [&] { return item->State() == NodeState::Loaded || item->State() == NodeState::Failed; });
  if (item->State() == NodeState::Failed) {
    throw Failure(failure::kComponent, item->DisplayName() + " could not be opened.", "tour");
  }
}

void Tour::ExpandEverything(const ScopeTreeItemPtr& item) {
  const auto& sType = item->Type();
  if (sType == "Table" || sType == "Query") return;
  Expand(item);
  const auto children = item->Children();
  for (const auto& child : children) ExpandEverything(child);
}

ScopeTreeItemPtr Tour::FirstOf(const ScopeTreeItemPtr& item, const char* sType) const {
  if (item->Type() == sType) return item;
  for (const auto& child : item->Children()) {
    if (auto found = FirstOf(child, sType)) return found;
  }
  return nullptr;
}

ScopeTreeItemPtr Tour::FindTable() const {
  auto& tree = m_window.Session().Tree();
  // This machine's own counters tell more than any other table, where they are recorded.
  for (const auto& server : tree.StaticItem()->Children()) {
    if (auto data = tree.Find(server->Key() + ".Catalogs.Machine.Data")) return data;
  }
  return FirstOf(tree.StaticItem(), "Table");
}

void Tour::ChooseView(const Text& sViewName) {
  const auto views = m_window.Session().ViewsOfSelected();
  auto& tabs = m_window.Results().ViewTabs();
  for (std::size_t n = 0; n < views.size(); ++n) {
    if (views[n].sName == sViewName) Click(&tabs, tabs.tabRect(static_cast<int>(n)).center());
  }
  WaitFor("Changing the view", [&] {
    const auto* view = m_window.Session().CurrentResultView();
    return view && view->Name() == sViewName;
  });
}

void Tour::PrintTree(const ScopeTreeItem& item, int iLevel) {
  m_out << Text(static_cast<std::size_t>(iLevel) * 2, ' ') << item.DisplayName() << '\n';
  for (const auto& child : item.Children()) PrintTree(*child, iLevel + 1);
}

void Tour::PrintRows(const platform::RecordsetPtr& recordset) {
  // Taken from the grid, so that they read as in the picture: times in the connection's zone.
  const auto* grid = m_window.Results().findChild<QTableView*>("rows");
  if (!recordset || !grid) {
    throw Failure(failure::kObjectNotSet, "The grid shows no rows.", "tour");
  }
  PrintModel(*grid->model(), kPrintedRows);
  m_out << "  " << recordset->RecordCount() << " rows\n";
}

void Tour::PrintList() {
  const auto& model = *m_window.Results().List().DetailsView()->model();
  PrintModel(model, model.rowCount());
}

void Tour::PrintModel(const QAbstractItemModel& model, int iMostRows) {
  std::vector<std::vector<Text>> lines(1);
  for (int c = 0; c < model.columnCount(); ++c) {
    lines[0].push_back(model.headerData(c, Qt::Horizontal).toString().toStdString());
  }
  for (int r = 0; r < std::min(model.rowCount(), iMostRows); ++r) {
    auto& line = lines.emplace_back();
    for (int c = 0; c < model.columnCount(); ++c) {
      line.push_back(model.index(r, c).data().toString().toStdString());
    }
  }
  PrintColumns(m_out, lines);
}

void Tour::Run(const Text& sDocument) {
  if (!m_folder.mkpath(".")) {
    throw Failure(failure::kStorage,
                  "The folder " + m_folder.path().toStdString() + " cannot be made.", "tour");
  }
  for (const auto& sOld : m_folder.entryList({"?-*.png", "copy.orvc"})) m_folder.remove(sOld);
  QTimer answers;
  connect(&answers, &QTimer::timeout, this, &Tour::AnswerDialogs);
  answers.start(20);

  auto& session = m_window.Session();
  if (!m_window.OpenDocument(sDocument) || !m_sFailure.empty()) {
    throw Failure(failure::kDocument, m_sFailure.empty() ? "Nothing was opened." : m_sFailure,
                  "tour");
  }
  if (!session.IsOpen()) {
    throw Failure(
        failure::kComponent,
        m_window.SnapInFailure().empty() ? "The snap-in is not loaded." : m_window.SnapInFailure(),
        "tour");
  }
  const auto root = session.Tree().StaticItem();
  ExpandEverything(root);
  Select(root);
  PrintTree(*root, 0);
  Picture("2-tree.png");

  const auto table = FindTable();
  if (!table) throw Failure(failure::kObjectNotSet, "The servers have no table.", "tour");
  Select(table);
  const auto editor = std::dynamic_pointer_cast<platform::TableEditor>(
      session.CurrentResultView()->HostedControl());
  if (!editor) {
    throw Failure(failure::kComponent, "The table's grid is not there.", "tour");
  }
  m_out << "\nTable " << table->Parent()->DisplayName() << ".." << table->DisplayName() << '\n';
  platform::Long lUpdatability = 0;
  PrintRows(editor->DetachRecordset(lUpdatability));
  Picture("3-table.png");

  ChooseView("TableStructureListView");
  m_out << "\nStructure of " << table->DisplayName() << '\n';
  PrintList();
  Picture("4-structure.png");

  const auto query = FirstOf(root, "Query");
  if (!query) throw Failure(failure::kObjectNotSet, "The servers have no named query.", "tour");
  Select(query);
  const auto results = std::dynamic_pointer_cast<platform::QueryResults>(
      session.CurrentResultView()->HostedControl());
  if (!results) {
    throw Failure(failure::kComponent, "The query's grid is not there.", "tour");
  }
  m_out << "\nQuery \"" << query->DisplayName() << "\"\n";
  PrintRows(results->Recordset());
  Picture("5-query.png");

  if (!m_window.SaveTo(m_folder.filePath("copy.orvc").toStdString())) {
    throw Failure(failure::kDocument, m_sFailure.empty() ? "Nothing was saved." : m_sFailure,
                  "tour");
  }
  m_out << "\nSaved, with pictures, in " << m_folder.path().toStdString() << '\n' << std::flush;
}

}  // namespace orvane::console
