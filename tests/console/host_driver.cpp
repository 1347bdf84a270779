#include "tests/console/host_driver.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QAbstractProxyModel>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTest>
#include <QTreeView>
#include <QWindow>
#include <map>

#include "component/registration.h"
#include "console/data_access/data_access.h"
#include "console/document/document.h"
#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"
#include "console/window/toolbar_view.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"
#include "tests/console/shown_qt_form.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;
using platform::Text;
using platform::Value;
using scenarios::kStaticNode;

namespace {

/// Counts what is sent through it.
class CountedCommand final : public platform::Command {
 public:
  CountedCommand(platform::CommandPtr command, std::shared_ptr<Long> count)
      : m_command(std::move(command)), m_count(std::move(count)) {}

  void ActiveConnection(const platform::ConnectionPtr& cn) override {
    m_command->ActiveConnection(cn);
  }
  Text CommandText() const override { return m_command->CommandText(); }
  void CommandText(const Text& sText) override { m_command->CommandText(sText); }
  Long CommandTimeout() const override { return m_command->CommandTimeout(); }
  void CommandTimeout(Long lSeconds) override { m_command->CommandTimeout(lSeconds); }
  Long MaxRecords() const override { return m_command->MaxRecords(); }
  void MaxRecords(Long lMaxRecords) override { m_command->MaxRecords(lMaxRecords); }
  platform::Boolean ReadOnly() const override { return m_command->ReadOnly(); }
  void ReadOnly(platform::Boolean bReadOnly) override { m_command->ReadOnly(bReadOnly); }
  platform::ParameterPtr CreateParameter(const Text& sName, platform::DataType type,
                                         platform::ParameterDirection direction, Long lSize,
                                         const platform::Value& vtValue) override {
    return m_command->CreateParameter(sName, type, direction, lSize, vtValue);
  }
  platform::Parameters& Parameters() override { return m_command->Parameters(); }
  void RowsExpected(std::optional<platform::RowIndex> rows) override {
    m_command->RowsExpected(rows);
  }
  void KeepRows(Boolean bKeep) override { m_command->KeepRows(bKeep); }
  void OnRows(platform::RowsHandler handler) override { m_command->OnRows(std::move(handler)); }
  void Sink(platform::RowSink sink) override { m_command->Sink(std::move(sink)); }
  platform::RecordsetPtr Execute(Long* lRecordsAffected, Long lOptions) override {
    ++*m_count;
    return m_command->Execute(lRecordsAffected, lOptions);
  }

 private:
  platform::CommandPtr m_command;
  std::shared_ptr<Long> m_count;
};

class CountingFactory final : public platform::ObjectFactory {
 public:
  CountingFactory(platform::ObjectFactoryPtr objects, std::shared_ptr<Long> count)
      : m_objects(std::move(objects)), m_count(std::move(count)) {}

  platform::ConnectionPtr CreateConnection() override { return m_objects->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    return std::make_shared<CountedCommand>(m_objects->CreateCommand(), m_count);
  }
  platform::TableQueryPtr CreateTableQuery() override { return m_objects->CreateTableQuery(); }

 private:
  platform::ObjectFactoryPtr m_objects;
  std::shared_ptr<Long> m_count;
};

Text Quoted(const Text& sName) {
  Text sQuoted = "\"";
  for (const char c : sName) sQuoted += c == '"' ? Text("\"\"") : Text(1, c);
  return sQuoted + "\"";
}

/// The catalog's file, written to beside the console.
class CatalogDatabase {
 public:
  explicit CatalogDatabase(const std::filesystem::path& file) {
    if (sqlite3_open(file.c_str(), &m_db) != SQLITE_OK) ADD_FAILURE() << sqlite3_errmsg(m_db);
  }
  ~CatalogDatabase() { sqlite3_close(m_db); }
  CatalogDatabase(const CatalogDatabase&) = delete;
  CatalogDatabase& operator=(const CatalogDatabase&) = delete;

  void Run(const Text& sSql) {
    EXPECT_EQ(sqlite3_exec(m_db, sSql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(m_db) << " in " << sSql;
  }
  void Insert(const Text& sTable, const std::vector<Value>& values) {
    Text sSql = "INSERT INTO " + Quoted(sTable) + " VALUES (";
    for (std::size_t n = 0; n < values.size(); ++n) {
      if (n > 0) sSql += ", ";
      if (values[n].IsNull()) {
        sSql += "NULL";
      } else if (values[n].Kind() == platform::ValueKind::Text) {
        sSql += "'" + platform::ToText(values[n]) + "'";
      } else {
        sSql += platform::ToText(values[n]);
      }
    }
    Run(sSql + ")");
  }

 private:
  sqlite3* m_db = nullptr;
};

Text DeclaredType(platform::DataType type) {
  switch (type) {
    case platform::DataType::Double:
      return "REAL";
    case platform::DataType::DBTimeStamp:
      return "TIMESTAMP";
    case platform::DataType::Integer:
      return "INTEGER";
    default:
      return "TEXT";
  }
}

/// The drawings of the toolbar's buttons, by their keys.
const std::map<Text, const char*> kButtonDrawings{{"MoveFirst", "move-first"},
                                                  {"MoveLast", "move-last"},
                                                  {"SortAsc", "sort-ascending"},
                                                  {"SortDesc", "sort-descending"},
                                                  {"CellQuery", "cell-query"},
                                                  {"Delete", "delete"},
                                                  {"Sql", "sql"}};

QImage Picture(const QIcon& icon) {
  return icon.pixmap(20, 20).toImage();
}

std::filesystem::path CatalogFile(const Text& sServer, const Text& sCatalog) {
  provider::engines::SqliteEngine engine;
  provider::historian::Historian historian(provider::historian::DefaultRoot(), sServer, engine, {});
  const auto record = historian.Find(sCatalog, {});
  if (record) return record->file;
  return historian.CreateCatalog(sCatalog, "", 0, {}).file;
}

}  // namespace

HostDriver::HostDriver() : m_settings(m_folder.filePath("settings.ini"), QSettings::IniFormat) {
  qputenv("XDG_DATA_HOME", m_folder.filePath("data").toUtf8());
  qputenv("XDG_STATE_HOME", m_folder.filePath("state").toUtf8());
  const auto registry = std::filesystem::path(m_folder.filePath("components").toStdString());
  for (const char* sLibrary : {ORVANE_SNAP_IN, ORVANE_CONTROLS, ORVANE_PROVIDER}) {
    component::RegisterLibrary(sLibrary, registry);
  }
  m_host = std::make_unique<console::Host>(registry);
  auto parts = m_host->Parts(&m_settings);
  parts.services.objects = std::make_shared<CountingFactory>(parts.services.objects, m_statements);
  m_window = std::make_unique<MainWindow>(std::move(parts));
  m_window->show();
  EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
  QObject::connect(&m_answers, &QTimer::timeout, [this] { AnswerDialog(); });
  m_answers.start(1);
  NewDocument();
}

HostDriver::~HostDriver() {
  EXPECT_TRUE(m_formUsers.empty()) << "a dialog that was answered never came up";
  m_window.reset();
  // Nothing of the snap-in may be left when its library goes. The others stay for as long as the
  // host may make table queries and show rows.
  m_host->Runtime().UnloadUnused();
  for (const auto& library : m_host->Runtime().Loaded()) {
    EXPECT_NE(library.filename(), "libORVOLEDBSnapIn.so");
  }
  m_host.reset();
  qunsetenv("XDG_DATA_HOME");
  qunsetenv("XDG_STATE_HOME");
}

void HostDriver::AnswerDialog() {
  auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!dialog || m_bAnswering) return;
  const QScopedValueRollback answering(m_bAnswering, true);
  EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
  if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
    AnswerMessageBox(*box);
  } else if (dialog->objectName() == "logonDialog") {
    AnswerLogonDialog(*dialog);
  } else {
    AnswerFormDialog(*dialog);
  }
}

void HostDriver::AnswerMessageBox(QMessageBox& box) {
  if (box.objectName() == "unsavedWorkBox") {
    // The console's own question; a case that opens another document is done with the last one.
    ClickAt(*box.button(QMessageBox::Discard), box.button(QMessageBox::Discard)->rect().center());
    return;
  }
  const bool bYesNo = box.standardButtons().testFlag(QMessageBox::Yes);
  m_boxes.push_back({box.text().toStdString(), box.windowTitle().toStdString(),
                     bYesNo ? platform::MsgBoxButtons::YesNo : platform::MsgBoxButtons::OkOnly});
  auto button = bYesNo ? QMessageBox::Yes : QMessageBox::Ok;
  if (bYesNo && !m_boxAnswers.empty()) {
    if (m_boxAnswers.front() == scenarios::BoxAnswer::No) button = QMessageBox::No;
    m_boxAnswers.pop_front();
  }
  ClickAt(*box.button(button), box.button(button)->rect().center());
}

void HostDriver::AnswerLogonDialog(QDialog& dialog) {
  ++m_lLogons;
  auto* server = dialog.findChild<QComboBox*>("m_cmbServer");
  if (server->isEnabled() && !m_sChosenServer.empty()) {
    ClickAt(*server, {12, server->height() / 2});
    QTest::keyClick(dialog.windowHandle(), Qt::Key_A, Qt::ControlModifier);
    for (const char c : m_sChosenServer) QTest::keyClick(dialog.windowHandle(), c);
  }
  const bool bOk = m_logonAnswer == scenarios::LogonAnswer::Ok;
  auto* button = dialog.findChild<QPushButton*>(bOk ? "m_btnOk" : "m_btnCancel");
  ClickAt(*button, button->rect().center());
}

void HostDriver::AnswerFormDialog(QDialog& dialog) {
  const Text sTitle = dialog.windowTitle().toStdString();
  if (m_formUsers.empty()) {
    ADD_FAILURE() << "an unexpected dialog: " << sTitle;
    dialog.close();
    return;
  }
  const auto user = std::move(m_formUsers.front());
  m_formUsers.pop_front();
  ShownQtForm form(dialog);
  try {
    user(form);
  } catch (const std::exception& e) {
    ADD_FAILURE() << sTitle << ": " << e.what();
  }
  EXPECT_FALSE(dialog.isVisible()) << sTitle << " was left open";
  dialog.close();
}

void HostDriver::WaitFor(const std::function<bool()>& condition) {
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return !m_window->Session().IsBusy() && condition(); }, 30'000));
}

void HostDriver::Activate() {
  if (m_window->isActiveWindow()) return;
  // Offscreen there is no window manager to give the keys back when a popup has closed.
  m_window->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
}

void HostDriver::AddServer(const scenarios::ServerSetup& server) {
  try {
    provider::historian::Historian::Make(provider::historian::DefaultRoot(), server.sName);
  } catch (const platform::Failure& e) {
    EXPECT_EQ(e.Number(), platform::failure::kKeyExists) << e.Description();
  }
  for (const auto& catalog : server.catalogs) {
    CatalogDatabase database(CatalogFile(server.sName, catalog.sName));
    for (const auto& table : catalog.tables) {
      Text sColumns;
      Text sKey;
      for (const auto& column : table.columns) {
        if (!sColumns.empty()) sColumns += ", ";
        sColumns += Quoted(column.sName) + " " + DeclaredType(column.type);
        if (!column.bNullable) sColumns += " NOT NULL";
        if (column.bKey) sKey += (sKey.empty() ? "" : ", ") + Quoted(column.sName);
      }
      if (!sKey.empty()) sColumns += ", PRIMARY KEY (" + sKey + ")";
      // Every catalog begins with the tables of a historian.
      database.Run("CREATE TABLE IF NOT EXISTS " + Quoted(table.sName) + " (" + sColumns + ")");
      for (const auto& row : table.rows) database.Insert(table.sName, row);
    }
  }
}

void HostDriver::AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                           const std::vector<Value>& values) {
  CatalogDatabase(CatalogFile(sServer, sCatalog)).Insert(sTable, values);
}

void HostDriver::NewDocument() {
  EXPECT_TRUE(m_window->NewDocument());
}

void HostDriver::OpenDocument(const Fill& fill) {
  const auto sPath = m_folder.filePath(QString("%1.orvc").arg(++m_iDocuments)).toStdString();
  {
    Document document(
        [this](const Text& sProgId) { return m_host->Objects().CreateObject(sProgId); });
    auto content = document.NewContent();
    fill(content->SnapIn(platform::kSnapInProgId), m_host->Objects());
    document.SaveAs(sPath, std::move(content));
  }
  EXPECT_TRUE(m_window->OpenDocument(sPath));
}

void HostDriver::SaveAndReopen() {
  if (m_window->Document().Path().empty()) {
    EXPECT_TRUE(
        m_window->SaveTo(m_folder.filePath(QString("%1.orvc").arg(++m_iDocuments)).toStdString()));
  } else {
    EXPECT_TRUE(m_window->Save());
  }
  EXPECT_FALSE(m_window->IsModified());
  EXPECT_TRUE(m_window->OpenDocument(m_window->Document().Path()));
}

Value HostDriver::SavedValue(const Text& sName) const {
  const auto* bag = m_window->Document().Content().FindSnapIn(platform::kSnapInProgId);
  return bag ? bag->ReadProperty(sName, {}) : Value();
}

ScopeTreeItemPtr HostDriver::Item(const Text& sKey) const {
  auto& tree = m_window->Session().Tree();
  return sKey == kStaticNode ? tree.StaticItem() : tree.Find(sKey);
}

QRect HostDriver::RectOf(const ScopeTreeItemPtr& item) {
  const auto index = m_window->Session().Tree().IndexOf(*item);
  m_window->Scope().scrollTo(index);
  return m_window->Scope().visualRect(index);
}

Boolean HostDriver::HasItem(const Text& sKey) const {
  return Item(sKey) != nullptr;
}

void HostDriver::Expand(const Text& sKey) {
  const auto item = Item(sKey);
  ASSERT_NE(item, nullptr) << sKey;
  auto& pane = m_window->Scope();
  if (pane.isExpanded(m_window->Session().Tree().IndexOf(*item))) return;
  const auto rect = RectOf(item);
  ASSERT_FALSE(rect.isEmpty()) << sKey << " is not in sight";
  if (item->HasExpandMark()) {
    QTest::mouseClick(pane.viewport(), Qt::LeftButton, {},
                      {rect.left() - pane.indentation() / 2, rect.center().y()});
  } else {
    QTest::mouseDClick(pane.viewport(), Qt::LeftButton, {}, rect.center());
  }
  WaitFor([&] { return item->State() == NodeState::Loaded || item->State() == NodeState::Failed; });
}

void HostDriver::Collapse(const Text& sKey) {
  const auto item = Item(sKey);
  ASSERT_NE(item, nullptr) << sKey;
  const auto rect = RectOf(item);
  auto& pane = m_window->Scope();
  QTest::mouseClick(pane.viewport(), Qt::LeftButton, {},
                    {rect.left() - pane.indentation() / 2, rect.center().y()});
  EXPECT_FALSE(pane.isExpanded(m_window->Session().Tree().IndexOf(*item)));
}

void HostDriver::Select(const Text& sKey) {
  const auto item = Item(sKey);
  ASSERT_NE(item, nullptr) << sKey;
  const auto rect = RectOf(item);
  ASSERT_FALSE(rect.isEmpty()) << sKey << " is not in sight";
  Activate();
  QTest::mouseClick(m_window->Scope().viewport(), Qt::LeftButton, {}, rect.center());
  WaitFor([&] { return m_window->Session().Selected() == item; });
}

Text HostDriver::Selected() const {
  const auto item = m_window->Session().Selected();
  EXPECT_EQ(m_window->Session().Tree().ItemAt(m_window->Scope().currentIndex()), item);
  return item == m_window->Session().Tree().StaticItem() ? Text(kStaticNode) : item->Key();
}

Boolean HostDriver::HasExpandMark(const Text& sKey) const {
  return m_window->Session().Tree().hasChildren(m_window->Session().Tree().IndexOf(*Item(sKey)));
}

std::vector<Text> HostDriver::Children(const Text& sKey) const {
  std::vector<Text> keys;
  for (const auto& child : Item(sKey)->Children()) keys.push_back(child->Key());
  return keys;
}

Text HostDriver::DisplayName(const Text& sKey) const {
  return Item(sKey)->DisplayName();
}

Text HostDriver::Tree() const {
  Text sTree;
  const std::function<void(const ScopeTreeItem&, const Text&)> append =
      [&](const ScopeTreeItem& item, const Text& sIndent) {
        sTree += sIndent + item.DisplayName() + "\n";
        for (const auto& child : item.Children()) append(*child, sIndent + "  ");
      };
  append(*m_window->Session().Tree().StaticItem(), "");
  return sTree;
}

void HostDriver::ShowView(const Text& sViewName) {
  const auto views = m_window->Session().ViewsOfSelected();
  auto& tabs = m_window->Results().ViewTabs();
  for (std::size_t n = 0; n < views.size(); ++n) {
    if (views[n].sName != sViewName) continue;
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(static_cast<int>(n)).center());
  }
  WaitFor([&] {
    const auto* view = m_window->Session().CurrentResultView();
    return view && view->Name() == sViewName;
  });
}

std::vector<scenarios::ListRow> HostDriver::ListRows() const {
  std::vector<scenarios::ListRow> rows;
  auto& results = m_window->Results();
  if (!results.IsListShown() || !results.Sentence().isEmpty()) return rows;
  const auto& list = results.List();
  for (int i = 0; i < list.RowCount(); ++i) {
    const auto* order = qobject_cast<QAbstractProxyModel*>(list.DetailsView()->model());
    const auto index = order->mapToSource(order->index(i, 0));
    const int iRow = index.row();
    rows.push_back({index.data().toString().toStdString(), list.Model()->ImageAt(iRow),
                    list.Model()->TextsAt(iRow)});
  }
  return rows;
}

std::shared_ptr<platform::Grid> HostDriver::ShownGrid() const {
  const auto* view = m_window->Session().CurrentResultView();
  return view ? std::dynamic_pointer_cast<platform::Grid>(view->HostedControl()) : nullptr;
}

scenarios::GridSnapshot HostDriver::Grid() const {
  scenarios::GridSnapshot grid;
  const auto shown = ShownGrid();
  if (!shown) return grid;
  grid.bShown = static_cast<QWidget*>(shown->Window())->isVisible();
  grid.bSqlStatements = shown->ShowSqlStatements();
  platform::RecordsetPtr rs;
  if (const auto editor = std::dynamic_pointer_cast<platform::TableEditor>(shown)) {
    Long lUpdatability = 0;
    rs = editor->DetachRecordset(lUpdatability);
  } else if (const auto results = std::dynamic_pointer_cast<platform::QueryResults>(shown)) {
    rs = results->Recordset();
  }
  if (!rs) return grid;
  for (platform::ColumnIndex c = 0; c < rs->FieldCount(); ++c) {
    grid.columns.push_back(rs->FieldAt(c).Name());
  }
  for (platform::RowIndex r = 0; r < rs->RecordCount(); ++r) {
    auto& row = grid.rows.emplace_back();
    for (platform::ColumnIndex c = 0; c < rs->FieldCount(); ++c) {
      row.push_back(platform::ToText(rs->ValueAt(r, c)));
    }
  }
  return grid;
}

QMenu* HostDriver::OpenMenu(const Text& sKey, scenarios::MenuWay way) {
  if (!HasItem(sKey)) {
    ADD_FAILURE() << "no item " << sKey;
    return nullptr;
  }
  Activate();
  auto& pane = m_window->Scope();
  QMenu* menu = nullptr;
  const auto shown = m_window->Session().Selected();
  if (way == scenarios::MenuWay::RightClick) {
    const auto at = RectOf(Item(sKey)).center();
    ClickAt(*pane.viewport(), at, Qt::RightButton);
  } else {
    Select(sKey);
    EXPECT_EQ(QApplication::focusWidget(), &pane);
  }
  if (way == scenarios::MenuWay::Keyboard) {
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F10, Qt::ShiftModifier);
  }
  if (way == scenarios::MenuWay::MenuBar) {
    menu = m_window->findChild<QMenu*>("mnuAction");
    auto* bar = m_window->menuBar();
    ClickAt(*bar, bar->actionGeometry(menu->menuAction()).center());
    WaitFor([&] { return menu->isVisible(); });
    return menu;
  }
  WaitFor([&] {
    menu = m_window->findChild<QMenu*>("contextMenu");
    return menu && menu->isVisible();
  });
  if (way == scenarios::MenuWay::RightClick) {
    EXPECT_EQ(m_window->Session().Selected(), shown) << "the menu showed something else";
  } else {
    EXPECT_EQ(Selected(), sKey);
  }
  return menu;
}

QList<QAction*> HostDriver::EntriesOf(const QMenu& menu) {
  const auto actions = menu.actions();
  EXPECT_FALSE(actions.empty());
  bool bAfterSeparator = true;
  bool bOwn = false;
  QList<QAction*> entries;
  for (auto* action : actions) {
    if (action->isSeparator()) {
      // A heading may come first.
      EXPECT_TRUE(!bAfterSeparator || !action->text().isEmpty())
          << "a separator that separates nothing";
      bAfterSeparator = true;
      continue;
    }
    const bool bWasOwn = std::exchange(bOwn, action->objectName().startsWith("act"));
    if (bOwn != bWasOwn) {
      EXPECT_TRUE(bAfterSeparator) << action->text().toStdString() << " is not set apart";
    }
    bAfterSeparator = false;
    if (!bOwn) entries.append(action);
  }
  EXPECT_FALSE(bAfterSeparator) << "a separator that separates nothing";
  return entries;
}

std::vector<scenarios::MenuEntry> HostDriver::Menu(const Text& sKey, scenarios::MenuWay way) {
  std::vector<scenarios::MenuEntry> entries;
  const QPointer menu = OpenMenu(sKey, way);
  if (!menu) return entries;
  for (const auto* action : EntriesOf(*menu)) {
    entries.push_back({action->text().toStdString(), action->isEnabled()});
  }
  QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
  WaitFor([&] { return !menu || !menu->isVisible(); });
  // The menu bar keeps the keys until they are taken back.
  if (m_window->menuBar()->hasFocus()) QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
  return entries;
}

void HostDriver::Choose(const Text& sKey, const Text& sCaption, scenarios::MenuWay way) {
  const QPointer menu = OpenMenu(sKey, way);
  if (!menu) return;
  QAction* chosen = nullptr;
  for (auto* action : EntriesOf(*menu)) {
    if (action->text().toStdString() == sCaption) chosen = action;
  }
  if (!chosen || !chosen->isEnabled()) {
    ADD_FAILURE() << "nothing to choose as " << sCaption << " in the menu of " << sKey;
    QTest::keyClick(menu->windowHandle(), Qt::Key_Escape);
    return;
  }
  ClickAt(*menu, menu->actionGeometry(chosen).center());
  // The command comes from the event loop, and its dialogs have loops of their own.
  QCoreApplication::processEvents();
  WaitFor([&] { return !menu || !menu->isVisible(); });
}

std::vector<scenarios::ButtonSeen> HostDriver::Toolbar() const {
  std::vector<scenarios::ButtonSeen> seen;
  const auto& bar = m_window->SnapInToolbar();
  const auto attached = m_window->Session().ControlBar().Attached();
  EXPECT_EQ(bar.isVisible(), attached != nullptr);
  EXPECT_EQ(bar.actions().isEmpty(), attached == nullptr);
  if (!attached) return seen;
  const auto shown = bar.actions();
  EXPECT_EQ(static_cast<std::size_t>(shown.size()), attached->All().size());
  for (const auto* action : shown) {
    const Text sKey = action->data().toString().toStdString();
    const auto& button = *attached->All().at(seen.size());
    EXPECT_EQ(button.Key(), sKey);
    seen.push_back({sKey, action->isSeparator() ? Text() : action->toolTip().toStdString(),
                    button.Image(), action->isEnabled(), action->isChecked()});
    if (action->isSeparator()) continue;
    const QImage drawing = Picture(ImageList::Named(kButtonDrawings.at(sKey)));
    EXPECT_FALSE(drawing.isNull()) << sKey;
    EXPECT_EQ(Picture(action->icon()), drawing) << sKey;
  }
  return seen;
}

void HostDriver::Press(const Text& sButton) {
  auto& bar = m_window->SnapInToolbar();
  auto* action = bar.ButtonAction(QString::fromStdString(sButton));
  ASSERT_NE(action, nullptr) << sButton;
  auto* button = bar.widgetForAction(action);
  // A button that has just come finds its place in the event loop.
  QCoreApplication::processEvents();
  ClickAt(*button, button->rect().center());
  QCoreApplication::processEvents();
  WaitFor([] { return true; });
}

Boolean HostDriver::CanRefresh() const {
  return m_window->findChild<QAction*>("actRefresh")->isEnabled();
}

void HostDriver::Refresh() {
  Activate();
  // Where it is off, its key has another meaning.
  if (CanRefresh()) {
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
  } else {
    m_window->findChild<QAction*>("actRefresh")->trigger();
  }
  WaitFor([] { return true; });
}

Boolean HostDriver::IsHourglassShown() const {
  const auto* pointer = QApplication::overrideCursor();
  return pointer && pointer->shape() == Qt::WaitCursor;
}

std::vector<scenarios::BoxSeen> HostDriver::TakeBoxes() {
  return std::exchange(m_boxes, {});
}

}  // namespace orvane::console

namespace orvane::scenarios {

std::unique_ptr<Driver> MakeDriver() {
  return std::make_unique<console::HostDriver>();
}

}  // namespace orvane::scenarios
