#include "tests/console/scenarios/host_driver.h"

#include <gtest/gtest.h>

#include <QAbstractProxyModel>
#include <QApplication>
#include <QTabBar>
#include <QTest>
#include <QTreeView>
#include <QWindow>

#include "component/registration.h"
#include "console/data_access/data_access.h"
#include "console/document/document.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "tests/console/scenarios/counted_objects.h"
#include "tests/console/scenarios/embedded_servers.h"
#include "tests/console/window/panes.h"
#include "tests/fakes/until.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;
using platform::Text;
using platform::Value;
using scenarios::kStaticNode;

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

void HostDriver::WaitFor(const std::function<bool()>& condition) {
  EXPECT_TRUE(tests::Until([&] { return !m_window->Session().IsBusy() && condition(); }));
}

void HostDriver::Activate() {
  if (m_window->isActiveWindow()) return;
  // Offscreen there is no window manager to give the keys back when a popup has closed.
  m_window->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
}

void HostDriver::AddServer(const scenarios::ServerSetup& server) {
  MakeServer(server);
}

void HostDriver::AppendRow(const Text& sServer, const Text& sCatalog, const Text& sTable,
                           const std::vector<Value>& values) {
  console::AppendRow(sServer, sCatalog, sTable, values);
}

void HostDriver::NewDocument() {
  EXPECT_TRUE(m_window->NewDocument());
}

void HostDriver::OpenDocument(const Fill& fill) {
  const auto sPath = m_folder.filePath(QString("%1.orvc").arg(++m_iDocuments)).toStdString();
  {
    const auto parts = m_host->Parts(&m_settings);
    Document document(parts.createStored);
    auto content = document.NewContent();
    fill(content->SnapIn(platform::kSnapInProgId), *parts.services.objects);
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
  ScopeOf(*m_window).scrollTo(index);
  return ScopeOf(*m_window).visualRect(index);
}

Boolean HostDriver::HasItem(const Text& sKey) const {
  return Item(sKey) != nullptr;
}

void HostDriver::Expand(const Text& sKey) {
  const auto item = Item(sKey);
  ASSERT_NE(item, nullptr) << sKey;
  auto& pane = ScopeOf(*m_window);
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
  auto& pane = ScopeOf(*m_window);
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
  QTest::mouseClick(ScopeOf(*m_window).viewport(), Qt::LeftButton, {}, rect.center());
  WaitFor([&] { return m_window->Session().Selected() == item; });
}

Text HostDriver::Selected() const {
  const auto item = m_window->Session().Selected();
  EXPECT_EQ(m_window->Session().Tree().ItemAt(ScopeOf(*m_window).currentIndex()), item);
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
  auto& tabs = *m_window->findChild<QTabBar*>("viewTabs");
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
  auto& results = ResultsOf(*m_window);
  if (!results.IsListShown() || !results.Sentence().isEmpty()) return rows;
  const auto& list = results.List();
  for (int i = 0; i < list.RowCount(); ++i) {
    const auto* order =
        qobject_cast<QAbstractProxyModel*>(list.findChild<QTreeView*>("resultDetails")->model());
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
