// A snap-in and a control that do as a test tells them and write down what the console asked of
// them. Made by the session under test through its creator; one thread.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "platform/console/snap_in.h"
#include "platform/failure.h"
#include "platform/grids/grids.h"
#include "platform/services.h"

namespace orvane::console::fakes {

using platform::Boolean;
using platform::Long;
using platform::ScopeItemPtr;
using platform::Text;

/// A control without a window.
class FakeControl final : public platform::Control {
 public:
  void* Window() override { return nullptr; }
  Text Layout() const override {
    if (sLayout == "broken") throw platform::Failure(platform::failure::kComponent, "No layout.");
    return sLayout;
  }
  void Layout(const Text& sGiven) override {
    if (sGiven == "refused") throw platform::Failure(platform::failure::kComponent, "No layout.");
    sLayout = sGiven;
  }

  Text sLayout;
};

inline std::shared_ptr<platform::Control> MakeControl() {
  return std::make_shared<FakeControl>();
}

/// What outlives the snap-in: its instructions and its log.
struct Script {
  /// A failure that it throws is shown and ends the expansion, as in a handler.
  std::function<void(platform::Services&, const ScopeItemPtr&)> expand;
  std::function<void(platform::Services&, platform::ResultView&)> initializeView;
  std::function<void(platform::Services&, platform::ResultView&)> activate;
  std::function<void(platform::Services&, const Text&, const platform::Selection&)> menuClick;
  std::function<void(platform::Services&, platform::ToolbarButton&)> buttonClick;
  std::function<void(platform::Services&, platform::View&)> refresh;
  bool bReadWhole = true;
  bool bWriteWhole = true;
  bool bFailCreate = false;
  bool bFailControl = false;
  Text sSaved = "first";  ///< what the snap-in has to save
  Text sRead;             ///< what it read
  std::vector<Text> log;
  int iAlive = 0;
  int iWrites = 0;  ///< how often it was asked for what it has to save
  std::map<Text, std::vector<platform::MenuItem>> menus;  ///< by node type

  bool Has(const Text& sEntry) const {
    return std::find(log.begin(), log.end(), sEntry) != log.end();
  }
};

/// Fails as a handler does: with a box, then by returning.
inline void ReportFailure(platform::Services& services, const Text& sText) {
  services.ui->MsgBox(sText, platform::MsgBoxButtons::OkOnly, platform::MsgBoxIcon::None, "Error");
}

class FakeSnapIn final : public platform::SnapIn {
 public:
  FakeSnapIn(std::shared_ptr<Script> script, platform::Services services)
      : m_script(std::move(script)), m_services(std::move(services)) {
    ++m_script->iAlive;
    m_toolbar = m_services.console->CreateToolbar();
  }
  ~FakeSnapIn() override { --m_script->iAlive; }

  platform::SnapInDescription Description() const override {
    const auto list = [](const Text& sName, const Text& sDisplay = {}) {
      platform::ResultViewDescription view;
      view.sName = sName;
      view.sDisplayName = sDisplay;
      view.columns = {{"Name", 200}};
      return view;
    };
    const auto control = [](const Text& sName, const Text& sProgId) {
      platform::ResultViewDescription view;
      view.sName = sName;
      view.sDescription = "Displays table data.";
      view.sControlProgId = sProgId;
      return view;
    };
    auto structure = list("TableStructureListView", "Structure");
    structure.columns = {{"Column name", 0}, {"Data type", 0}, {"Is nullable?", 0}};
    platform::SnapInDescription description;
    description.sName = "SnapIn";
    description.sDisplayName = "ORVANE OLE DB";
    description.sStaticNodeType = "Servers";
    description.nodeTypes = {
        {"Servers", "{1}", "Servers", 1, {list("DefaultListView")}},
        {"Server", "{2}", "Server", 2, {list("DefaultListView")}},
        {"Catalogs", "{3}", "Catalogs", 3, {list("DefaultListView")}, true},
        {"Catalog", "{4}", "Catalog", 4, {list("DefaultListView")}, true},
        {"Table",
         "{5}",
         "Table",
         7,
         {control("TableEditorOcxView", platform::kTableEditorProgId), structure}},
        {"Queries", "{6}", "Queries", 8, {list("QueriesListView")}},
        {"Query", "{7}", "Query", 9, {control("QueryResultsOcxView", "Grid")}}};
    return description;
  }

  void SnapIn_Initialize() override {
    Log("Initialize");
    m_services.console->StaticNodeDisplayName("ORVANE Servers");
  }
  Boolean SnapIn_ReadProperties(platform::PropertyBag& pb) override {
    Log("ReadProperties");
    const auto vtValue = pb.ReadProperty("Text", Text());
    m_script->sRead = *vtValue.As<Text>();
    m_script->sSaved = m_script->sRead;
    return m_script->bReadWhole;
  }
  Boolean SnapIn_WriteProperties(platform::PropertyBag& pb) override {
    ++m_script->iWrites;
    pb.WriteProperty("Text", m_script->sSaved);
    if (!m_script->bWriteWhole) ReportFailure(m_services, "The options cannot be read.");
    return m_script->bWriteWhole;
  }
  void SnapIn_Unload() override { Log("Unload"); }
  void SnapIn_Terminate() override { Log("Terminate"); }

  void ScopeItems_Initialize(const ScopeItemPtr& item) override {
    Log("ScopeItems_Initialize " + item->NodeTypeName());
    item->Tag(std::make_shared<platform::Object>());
  }
  Boolean ScopeItems_Expand(const ScopeItemPtr& item) override {
    Log("Expand " + item->NodeTypeName());
    try {
      if (m_script->expand) m_script->expand(m_services, item);
      return true;
    } catch (const platform::Failure& e) {
      ReportFailure(m_services, e.Description());
      return false;
    }
  }

  void ResultViews_Initialize(platform::ResultView& view) override {
    Log("Initialize " + view.Name());
    if (m_script->initializeView) m_script->initializeView(m_services, view);
  }
  void ResultViews_InitializeControl(platform::ResultView& view) override {
    Log("InitializeControl " + view.Name());
  }
  void ResultViews_Activate(platform::ResultView& view) override {
    bool bControl = false;
    try {
      bControl = view.Control() != nullptr;
    } catch (const platform::Failure& e) {
      Log("NoControl " + e.Description());
    }
    m_bGrid = bControl;
    Log("Activate " + view.Name() + (bControl ? " with control" : ""));
    if (m_script->activate) m_script->activate(m_services, view);
  }
  void ResultViews_Deactivate(platform::ResultView& view) override {
    m_bGrid = false;
    Log("Deactivate " + view.Name());
  }

  void Views_AddTopMenuItems(platform::View&, const platform::Selection& selection,
                             platform::ContextMenu& menu, Boolean) override {
    const auto sType = selection.ScopeItem(1)->NodeTypeName();
    const auto at = m_script->menus.find(sType);
    if (at != m_script->menus.end()) menu.AddMenu({"m_mnu" + sType, sType, at->second});
  }
  void Views_UpdateControlbar(platform::View&, const platform::Selection& selection,
                              Boolean bSelected, platform::ControlBar& controlBar) override {
    Log(Text(bSelected ? "Controlbar +" : "Controlbar -") + selection.ScopeItem(1)->Key());
    const bool bWanted = bSelected && m_bGrid;
    if (bWanted == m_bAttached) return;
    m_bAttached = bWanted;
    if (!bWanted) {
      controlBar.Detach(m_toolbar);
      m_toolbar->Buttons().Clear();
      return;
    }
    using platform::ButtonStyle;
    m_toolbar->Buttons().Add(1, "MoveFirst", 2, "Move to First Row", ButtonStyle::Default);
    m_toolbar->Buttons().Add(2, "MoveLast", 4, "Move to Last Row", ButtonStyle::Default);
    m_toolbar->Buttons().Add(3, "", 1, "", ButtonStyle::Separator);
    m_toolbar->Buttons().Add(4, "Sql", 14, "Show/Hide SQL Statement", ButtonStyle::Check);
    m_toolbar->Buttons().Item("MoveLast").Enabled(false);
    controlBar.Attach(m_toolbar);
  }
  void Views_Select(platform::View&, const platform::Selection& selection, Boolean bSelected,
                    platform::ConsoleVerbs& verbs) override {
    Log(Text(bSelected ? "Select +" : "Select -") + selection.ScopeItem(1)->Key());
    if (bSelected) verbs.Enabled(platform::kVerbRefresh, m_bGrid);
  }
  void Views_Refresh(platform::View& view) override {
    Log("Refresh");
    if (m_script->refresh) m_script->refresh(m_services, view);
  }
  void Menu_Click(const Text& sMenuItem, Long lIndex,
                  const platform::Selection& selection) override {
    Log("Click " + sMenuItem + " " + std::to_string(lIndex));
    if (m_script->menuClick) m_script->menuClick(m_services, sMenuItem, selection);
  }
  void Toolbar_ButtonClick(platform::ToolbarButton& button) override {
    Log("Button " + button.Key());
    if (m_script->buttonClick) m_script->buttonClick(m_services, button);
  }

 private:
  void Log(Text sEntry) { m_script->log.push_back(std::move(sEntry)); }

  std::shared_ptr<Script> m_script;
  platform::Services m_services;
  platform::ToolbarPtr m_toolbar;
  bool m_bGrid = false;
  bool m_bAttached = false;
};

/// A user interface that answers every box with its first button and keeps its text.
class FakeUserInterface final : public platform::UserInterface {
 public:
  platform::MsgBoxResult MsgBox(const Text& sText, platform::MsgBoxButtons buttons,
                                platform::MsgBoxIcon, const Text& sTitle) override {
    boxes.push_back(sTitle + ": " + sText);
    return buttons == platform::MsgBoxButtons::YesNo ? platform::MsgBoxResult::Yes
                                                     : platform::MsgBoxResult::Ok;
  }
  Long MousePointer() const override { return m_lPointer; }
  void MousePointer(Long lPointer) override { m_lPointer = lPointer; }
  void Beep() override {}
  void DoEvents() override {}

  std::vector<Text> boxes;

 private:
  Long m_lPointer = platform::kMousePointerDefault;
};

/// Makes the fakes by the progids that the fake snap-in's description names.
inline std::function<platform::ObjectPtr(const Text&, const platform::Services&)> MakeCreator(
    std::shared_ptr<Script> script,
    std::shared_ptr<platform::Control> (*makeControl)() = MakeControl) {
  return [script = std::move(script), makeControl](
             const Text& sProgId, const platform::Services& services) -> platform::ObjectPtr {
    if (sProgId == platform::kSnapInProgId) {
      if (script->bFailCreate) {
        throw platform::Failure(platform::failure::kComponent,
                                "The component \"ORVOLEDBSnapIn\" is not registered.");
      }
      return std::make_shared<FakeSnapIn>(script, services);
    }
    if (script->bFailControl) {
      throw platform::Failure(platform::failure::kComponent,
                              "The component \"" + sProgId + "\" is not registered.");
    }
    return makeControl();
  };
}

/// Adds a child item as the snap-in does.
inline ScopeItemPtr AddItem(platform::Services& services, const ScopeItemPtr& parent,
                            const Text& sType, const Text& sKey, const Text& sName,
                            bool bHasChildren) {
  auto item = services.console->ScopeItems().Add(sType, sKey, parent->ScopeNode(), bHasChildren);
  item->NodeId(sKey);
  item->DisplayName(sName);
  item->ColumnHeaders().Clear();
  item->ColumnHeaders().Add(1, "Name", "Name", 200);
  item->ListSubItems().Clear();
  item->ListSubItems().Add(1, "Name", sName);
  item->Tag(std::make_shared<platform::Object>());
  return item;
}

/// The usual tree: two servers, each with its folders, a catalog with tables, and queries.
inline void ExpandUsualTree(platform::Services& services, const ScopeItemPtr& item) {
  const auto sType = item->NodeTypeName();
  const auto sKey = item->Key();
  if (sType == "Servers") {
    AddItem(services, item, "Server", "alpha", "alpha", true);
    AddItem(services, item, "Server", "beta", "beta", true);
  } else if (sType == "Server") {
    AddItem(services, item, "Catalogs", sKey + ".Catalogs", "Catalogs", true);
    AddItem(services, item, "Queries", sKey + ".Queries", "Queries", false);
  } else if (sType == "Catalogs") {
    AddItem(services, item, "Catalog", sKey + ".Machine", "Machine", true);
  } else if (sType == "Catalog") {
    for (const char* sName : {"Tags", "Data10", "Data2"}) {
      AddItem(services, item, "Table", sKey + "." + sName, sName, false);
    }
  } else if (sType == "Queries") {
    auto query = AddItem(services, item, "Query", sKey + ".Load", "Load", false);
    query->ColumnHeaders().Add(2, "Query", "Query", 300);
    query->ListSubItems().Add(2, "Query", "SELECT 1");
  }
}

}  // namespace orvane::console::fakes
