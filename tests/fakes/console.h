// The console without a window: views, toolbar, control bar, verbs, selection, menus.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/console/console.h"
#include "platform/console/menus.h"
#include "platform/failure.h"
#include "tests/fakes/scope_items.h"

namespace orvane::fakes {

class FakeListItem : public platform::ListItem {
 public:
  FakeListItem(platform::Text sItemText, platform::Long lItemIcon)
      : sText(std::move(sItemText)), lIcon(lItemIcon) {}
  FakeListSubItems& ListSubItems() override { return m_subItems; }
  platform::Text sText;
  platform::Long lIcon;

 private:
  FakeListSubItems m_subItems;
};

class FakeListItems : public platform::ListItems {
 public:
  platform::ListItem& Add(const platform::Text& sText, platform::Long lIcon) override {
    items.push_back(std::make_unique<FakeListItem>(sText, lIcon));
    return *items.back();
  }
  platform::Long Count() const override { return static_cast<platform::Long>(items.size()); }
  std::vector<std::unique_ptr<FakeListItem>> items;
};

class FakeResultView : public platform::ResultView {
 public:
  FakeResultView(platform::Text sName, FakeScopeItemPtr item)
      : m_sName(std::move(sName)), m_item(std::move(item)) {}
  platform::Text Name() const override { return m_sName; }
  platform::ScopeItemPtr ScopeItem() const override { return m_item; }
  FakeListItems& ListItems() override { return m_listItems; }
  platform::ObjectPtr Control() const override {
    if (bNoControl) throw platform::Failure(3809, "The control could not be created.");
    return control;
  }
  platform::ObjectPtr control;
  bool bNoControl = false;

 private:
  platform::Text m_sName;
  FakeScopeItemPtr m_item;
  FakeListItems m_listItems;
};

class FakeView : public platform::View {
 public:
  void SelectScopeItem(const platform::ScopeItemPtr& item) override {
    selected = item;
    if (onSelect) onSelect(item);
  }
  void RefreshSelection() override { ++nRefreshes; }
  platform::ScopeItemPtr selected;
  std::function<void(const platform::ScopeItemPtr&)> onSelect;
  int nRefreshes = 0;
};

class FakeSelection : public platform::Selection {
 public:
  FakeSelection() = default;
  explicit FakeSelection(FakeScopeItemPtr item) : items{std::move(item)} {}
  platform::Long Type() const override { return lType; }
  platform::Long ScopeItemCount() const override {
    return static_cast<platform::Long>(items.size());
  }
  platform::ScopeItemPtr ScopeItem(platform::Long lIndex) const override {
    if (lIndex < 1 || lIndex > ScopeItemCount()) throw platform::Failure(9, "Nothing selected.");
    return items[static_cast<std::size_t>(lIndex) - 1];
  }
  std::vector<FakeScopeItemPtr> items;
  platform::Long lType = platform::kSelectionSingleScopeItem;
};

class FakeVerbs : public platform::ConsoleVerbs {
 public:
  platform::Boolean Enabled(platform::Long lVerb) const override {
    const auto verb = verbs.find(lVerb);
    return verb != verbs.end() && verb->second;
  }
  void Enabled(platform::Long lVerb, platform::Boolean bEnabled) override {
    if (bFail) throw platform::Failure(5, "There is no such verb.");
    verbs[lVerb] = bEnabled;
  }
  std::map<platform::Long, bool> verbs;
  bool bFail = false;
};

class FakeContextMenu : public platform::ContextMenu {
 public:
  void AddMenu(const platform::Menu& menu) override { menus.push_back(menu); }
  std::vector<platform::Menu> menus;
};

class FakeToolbarButton : public platform::ToolbarButton {
 public:
  FakeToolbarButton(platform::Text sButtonKey, platform::Long lButtonImage,
                    platform::Text sButtonToolTip, platform::ButtonStyle buttonStyle)
      : lImage(lButtonImage),
        sToolTip(std::move(sButtonToolTip)),
        style(buttonStyle),
        m_sKey(std::move(sButtonKey)) {}
  platform::Text Key() const override { return m_sKey; }
  platform::Boolean Enabled() const override { return m_bEnabled; }
  void Enabled(platform::Boolean bEnabled) override { m_bEnabled = bEnabled; }
  platform::Boolean Pressed() const override { return m_bPressed; }
  void Pressed(platform::Boolean bPressed) override { m_bPressed = bPressed; }
  platform::Long lImage;
  platform::Text sToolTip;
  platform::ButtonStyle style;

 private:
  platform::Text m_sKey;
  bool m_bEnabled = true;
  bool m_bPressed = false;
};

class FakeToolbarButtons : public platform::ToolbarButtons {
 public:
  platform::ToolbarButton& Add(platform::Long lIndex, const platform::Text& sKey,
                               platform::Long lImage, const platform::Text& sToolTip,
                               platform::ButtonStyle style) override {
    if (!sKey.empty() && sKey == sFailingKey) throw platform::Failure(5, "No such image.");
    auto button = std::make_unique<FakeToolbarButton>(sKey, lImage, sToolTip, style);
    const auto nOffset = std::min(static_cast<std::size_t>(lIndex) - 1, buttons.size());
    ++nAdded;
    positions.push_back(lIndex);
    return **buttons.insert(buttons.begin() + static_cast<std::ptrdiff_t>(nOffset),
                            std::move(button));
  }
  FakeToolbarButton& Item(const platform::Text& sKey) override {
    for (const auto& button : buttons) {
      if (button->Key() == sKey) return *button;
    }
    throw platform::Failure(5, "There is no button \"" + sKey + "\".");
  }
  platform::Long Count() const override { return static_cast<platform::Long>(buttons.size()); }
  void Clear() override {
    if (bFailClear) throw platform::Failure(5, "The toolbar cannot be cleared.");
    buttons.clear();
  }
  std::vector<std::unique_ptr<FakeToolbarButton>> buttons;
  platform::Text sFailingKey;
  bool bFailClear = false;
  int nAdded = 0;
  std::vector<platform::Long> positions;  ///< as asked for, since the toolbar was made
};

class FakeToolbar : public platform::Toolbar {
 public:
  FakeToolbarButtons& Buttons() override { return m_buttons; }

 private:
  FakeToolbarButtons m_buttons;
};

class FakeControlBar : public platform::ControlBar {
 public:
  void Attach(const platform::ToolbarPtr& toolbar) override {
    if (bFailAttach) throw platform::Failure(5, "The toolbar cannot be attached.");
    if (onAttach) onAttach();
    attached = toolbar;
    ++nAttached;
  }
  void Detach(const platform::ToolbarPtr& toolbar) override {
    if (bFailDetach) throw platform::Failure(5, "The toolbar cannot be detached.");
    if (onDetach) onDetach();
    if (attached == toolbar) attached.reset();
  }
  platform::ToolbarPtr attached;
  int nAttached = 0;
  bool bFailAttach = false;
  bool bFailDetach = false;
  std::function<void()> onAttach;
  std::function<void()> onDetach;
};

class FakeConsole : public platform::Console {
 public:
  FakeConsole() {
    staticItem = std::make_shared<FakeScopeItem>("Servers", "", "");
    staticItem->node->bHasChildren = true;
    m_scopeItems.root = staticItem;
  }
  FakeScopeItems& ScopeItems() override { return m_scopeItems; }
  void StaticNodeDisplayName(const platform::Text& sDisplayName) override {
    if (bFailStaticName) throw platform::Failure(5, "The static node cannot be named.");
    staticItem->DisplayName(sDisplayName);
  }
  FakeView& CurrentView() override { return m_view; }
  std::shared_ptr<platform::ResultView> CurrentResultView() override { return resultView; }
  platform::ToolbarPtr CreateToolbar() override {
    ++nToolbarsAskedFor;
    if (bFailCreateToolbar) throw platform::Failure(5, "There is no room for a toolbar.");
    toolbar = std::make_shared<FakeToolbar>();
    return toolbar;
  }

  FakeScopeItemPtr staticItem;
  std::shared_ptr<FakeResultView> resultView;
  std::shared_ptr<FakeToolbar> toolbar;
  int nToolbarsAskedFor = 0;
  bool bFailCreateToolbar = false;
  bool bFailStaticName = false;

 private:
  FakeScopeItems m_scopeItems;
  FakeView m_view;
};

}  // namespace orvane::fakes
