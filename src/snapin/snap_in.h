// The snap-in object: receives the console's events and owns the model they work on.
// The console makes one for each document, through the class factory. All calls come on the
// user-interface thread. Each family of events has its own source file.
#pragma once

#include <memory>
#include <vector>

#include "nodes/counted.h"
#include "nodes/server_node.h"
#include "nodes/servers_node.h"
#include "platform/console/snap_in.h"
#include "platform/console_version.h"
#include "platform/grids/grids.h"
#include "platform/services.h"
#include "snapin/guard.h"

namespace orvane::nodes {
class CatalogNode;
class QueryNode;
class QueryNodesCollection;
class TableNode;
}  // namespace orvane::nodes

namespace orvane::snapin {

class SnapIn : private nodes::Counted,
               public platform::SnapIn,
               public nodes::ServersNodeOwner,
               public std::enable_shared_from_this<SnapIn> {
 public:
  using Boolean = platform::Boolean;
  using Long = platform::Long;
  using Text = platform::Text;

  /// Fails with failure::kComponent when the console, the object factory or the user interface is
  /// missing. Without file-version functions the console's version counts as unknown.
  explicit SnapIn(const platform::Services& services);
  ~SnapIn() override;

  // ---- lifecycle.cpp
  platform::SnapInDescription Description() const override;
  void SnapIn_Initialize() override;
  Boolean SnapIn_ReadProperties(platform::PropertyBag& pb) override;
  Boolean SnapIn_WriteProperties(platform::PropertyBag& pb) override;
  void SnapIn_Unload() override;
  void SnapIn_Terminate() override;
  void ServersNodeChanged() override;

  // ---- scope_items.cpp
  void ScopeItems_Initialize(const platform::ScopeItemPtr& item) override;
  Boolean ScopeItems_Expand(const platform::ScopeItemPtr& item) override;

  // ---- list_views.cpp
  void ResultViews_Initialize(platform::ResultView& view) override;

  // ---- grid_views.cpp
  void ResultViews_InitializeControl(platform::ResultView& view) override;
  void ResultViews_Activate(platform::ResultView& view) override;
  void ResultViews_Deactivate(platform::ResultView& view) override;

  // ---- menus.cpp
  void Views_AddTopMenuItems(platform::View& view, const platform::Selection& selection,
                             platform::ContextMenu& menu, Boolean bInsertionAllowed) override;
  void Menu_Click(const Text& sMenuItem, Long lIndex,
                  const platform::Selection& selection) override;

  // ---- toolbar.cpp
  void Views_UpdateControlbar(platform::View& view, const platform::Selection& selection,
                              Boolean bSelected, platform::ControlBar& controlBar) override;
  void Views_Select(platform::View& view, const platform::Selection& selection, Boolean bSelected,
                    platform::ConsoleVerbs& verbs) override;
  void Views_Refresh(platform::View& view) override;
  void Toolbar_ButtonClick(platform::ToolbarButton& button) override;

 private:
  /// By the numbers under which the toolbar kinds are known.
  enum class ToolbarKind : std::uint8_t { None = 0, Table = 1, Query = 2 };

  // ---- lifecycle.cpp
  void ReleaseObjects();
  template <class Body>
  Boolean Guard(Body&& body) {
    return Guarded(m_services, std::forward<Body>(body));
  }
  /// The root; fails with 91 when there is none.
  nodes::ServersNode& Root() const;
  /// Makes the node the root of the model.
  void InstallRoot(const nodes::ServersNodePtr& root);

  // ---- scope_items.cpp
  platform::ScopeItemPtr AddScopeItem(const char* sNodeType, const Text& sKey,
                                      platform::ScopeItem& parent, Boolean bHasChildren);
  void SetNameColumn(platform::ScopeItem& item);
  void ExpandServers(platform::ScopeItem& item);
  platform::ScopeItemPtr AddServerScopeItem(platform::ScopeItem& rootItem,
                                            const nodes::ServerNodePtr& server);
  void ExpandServer(platform::ScopeItem& item);
  void PopulateCatalogs(platform::ScopeItem& item);
  platform::ScopeItemPtr AddCatalogScopeItem(platform::ScopeItem& catalogsItem,
                                             const Text& sCatalog);
  void PopulateTables(platform::ScopeItem& item);
  void AddTableScopeItem(platform::ScopeItem& catalogItem, nodes::CatalogNode& catalog,
                         const platform::ConnectionPtr& cn, const Text& sTable);
  void ExpandQueries(platform::ScopeItem& item);
  void AddQueryScopeItem(platform::ScopeItem& queriesItem,
                         const std::shared_ptr<nodes::QueryNode>& query);

  // ---- list_views.cpp
  void ShowTableStructure(platform::ResultView& view, const nodes::TableNode& table);

  // ---- grid_views.cpp
  void ActivateTable(platform::ResultView& view);
  void ActivateQuery(platform::ResultView& view);
  /// Sets the grid reference, or none, and listens to the grid's events.
  void TableEditor(const platform::TableEditorPtr& grid);
  void QueryResults(const platform::QueryResultsPtr& grid);
  /// Has each event that both grids raise set the buttons of that kind.
  std::vector<platform::Subscription> ListenTo(const std::shared_ptr<platform::Grid>& grid,
                                               ToolbarKind kind);

  // ---- menus.cpp
  struct MenuCommand {
    const char* sName;
    const char* sCaption;
    Boolean (*isEnabled)(const platform::ScopeItem& item);
    void (SnapIn::*handler)(const platform::ScopeItemPtr& item);
    /// What comes of it, where something goes that was not named.
    const char* (*statusText)(const platform::ScopeItem& item) = [](const auto&) { return ""; };
  };
  struct NodeMenu {
    const char* sNodeType;
    const char* sName;
    const char* sCaption;
    Boolean (*isOffered)(const platform::ScopeItem& item);
    std::vector<MenuCommand> commands;
  };
  static const std::vector<NodeMenu>& Menus();

  // ---- toolbar.cpp
  struct ShownGrid;
  struct ButtonClick;
  struct Button;
  static const std::vector<Button>& Buttons();
  ShownGrid GridOf(ToolbarKind kind) const;
  /// The kind of the grid that is shown.
  ToolbarKind KindShown() const;
  Boolean IsConsoleAtLeast51() const;
  void AddButtons(ToolbarKind kind);
  /// Sets that toolbar's buttons as its grid says; nothing while it is not built.
  void ButtonStates(ToolbarKind kind);
  /// Has the grid shown do that, if there is one.
  template <auto kOperation>
  void ActOnGrid(const ButtonClick& click);
  /// Has the table's grid do that, if it is the one shown.
  template <auto kOperation>
  void ActOnTable(const ButtonClick& click);
  void ToggleSqlStatements(const ButtonClick& click);

  // ---- commands.cpp
  /// Asks with Yes and No, Yes being the default.
  Boolean Confirmed(const Text& sQuestion, const Text& sTitle);
  /// Where rows lie that go with the server's connection, or with that catalog of it.
  static platform::RowsPlace PlaceOf(const nodes::ServerNode& server, const Text& sCatalog = {});
  /// The rows of a named query, which it shows under that name.
  static platform::RowsPlace PlaceOf(const nodes::QueryNode& query, const Text& sName);
  /// The console asks where rows of the place are not stored; false when they are to stay.
  Boolean MayLoseRows(const platform::RowsPlace& place);
  void LoseRows(const platform::RowsPlace& place);
  /// Whether the result pane shows this item's view.
  Boolean IsShown(const platform::ScopeItem& item) const;

  // ---- server_commands.cpp
  void m_mnuOptions_Click(const platform::ScopeItemPtr& item);
  void m_mnuServersConnect_Click(const platform::ScopeItemPtr& rootItem);
  void m_mnuConnect_Click(const platform::ScopeItemPtr& item);
  void m_mnuDisconnect_Click(const platform::ScopeItemPtr& item);
  void m_mnuRemoveServer_Click(const platform::ScopeItemPtr& item);
  /// Copies the root's options into every known table and drops all cached rows.
  void ApplyOptions();

  // ---- catalog_commands.cpp
  void m_mnuAddCatalog_Click(const platform::ScopeItemPtr& catalogsItem);
  void m_mnuCatalogRemove_Click(const platform::ScopeItemPtr& item);

  // ---- table_commands.cpp
  void m_mnuQuery_Click(const platform::ScopeItemPtr& item);

  // ---- query_commands.cpp
  void m_mnuNewQuery_Click(const platform::ScopeItemPtr& queriesItem);
  void m_mnuEdit_Click(const platform::ScopeItemPtr& item);
  void m_mnuRemove_Click(const platform::ScopeItemPtr& item);

  platform::Services m_services;
  nodes::ServersNodePtr m_root;
  platform::ConsoleVersion m_consoleVersion;
  platform::TableEditorPtr m_tblEditor;
  std::vector<platform::Subscription> m_tblEditorEvents;
  platform::QueryResultsPtr m_qrResults;
  std::vector<platform::Subscription> m_qrResultsEvents;
  platform::ToolbarPtr m_tbrToolbar;
  /// Kind of the toolbar attached to the control bar.
  ToolbarKind m_toolbarKind = ToolbarKind::None;
  /// Kind of the buttons in m_tbrToolbar; a grid's events may come before they are built.
  ToolbarKind m_buttonsKind = ToolbarKind::None;
};

}  // namespace orvane::snapin
