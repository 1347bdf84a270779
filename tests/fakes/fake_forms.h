// Forms without widgets, for tests of dialogs: every control keeps what it was told, and the test
// plays the user from within ShowModal.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/forms/forms.h"

namespace orvane::fakes {

using platform::Boolean;
using platform::Long;

/// What every fake control keeps.
template <class Interface>
class FakeControl : public Interface {
 public:
  Boolean Enabled() const override { return m_bEnabled; }
  void Enabled(Boolean bEnabled) override { m_bEnabled = bEnabled; }
  void SetFocus() override { ++m_nFocused; }
  int TimesFocused() const { return m_nFocused; }

 private:
  Boolean m_bEnabled = true;
  int m_nFocused = 0;
};

template <class Interface>
class FakeCaptioned : public FakeControl<Interface> {
 public:
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override { m_sLabel = sLabel; }

 private:
  platform::Text m_sLabel;
};

using FakeCaption = FakeCaptioned<platform::Caption>;

class FakeTextBox : public FakeControl<platform::TextBox> {
 public:
  platform::Text Text() const override {
    if (bUnreadable) throw platform::Failure(5, "The box cannot be read.");
    return m_sText;
  }
  void Text(const platform::Text& sText) override {
    m_sText = sText;
    m_change.Raise();
  }
  Boolean Locked() const override { return m_bLocked; }
  void Locked(Boolean bLocked) override { m_bLocked = bLocked; }
  platform::Color ForeColor() const override { return m_color; }
  void ForeColor(platform::Color color) override { m_color = color; }
  platform::Subscription OnChange(std::function<void()> handler) override {
    return m_change.Connect(std::move(handler));
  }

  /// The user types at the end, which a locked or disabled box refuses.
  void Type(const platform::Text& sText) {
    if (!m_bLocked && Enabled()) Text(m_sText + sText);
  }

  bool bUnreadable = false;

 private:
  platform::Text m_sText;
  Boolean m_bLocked = false;
  platform::Color m_color;
  platform::Signal<> m_change;
};

class FakeButton : public FakeCaptioned<platform::Button> {
 public:
  platform::Subscription OnClick(std::function<void()> handler) override {
    return m_click.Connect(std::move(handler));
  }
  /// The user clicks, which a disabled button refuses.
  void Click() {
    if (Enabled()) m_click.Raise();
  }

 private:
  platform::Signal<> m_click;
};

class FakeCheckBox : public FakeCaptioned<platform::CheckBox> {
 public:
  Boolean Checked() const override { return m_bChecked; }
  void Checked(Boolean bChecked) override {
    if (bChecked == m_bChecked) return;
    m_bChecked = bChecked;
    m_click.Raise();
  }
  platform::Subscription OnClick(std::function<void()> handler) override {
    return m_click.Connect(std::move(handler));
  }

 private:
  Boolean m_bChecked = false;
  platform::Signal<> m_click;
};

class FakeDropDownList : public FakeControl<platform::DropDownList> {
 public:
  void Clear() override {
    m_items.clear();
    m_lIndex = -1;
  }
  void Add(const platform::Text& sText, Long lItemData) override {
    m_items.emplace_back(sText, lItemData);
  }
  Long Count() const override { return static_cast<Long>(m_items.size()); }
  platform::Text Item(Long lIndex) const override { return At(lIndex).first; }
  Long ItemData(Long lIndex) const override { return At(lIndex).second; }
  Long ListIndex() const override { return m_lIndex; }
  void ListIndex(Long lIndex) override { m_lIndex = lIndex; }

 private:
  const std::pair<platform::Text, Long>& At(Long lIndex) const {
    return m_items.at(static_cast<std::size_t>(lIndex));
  }

  std::vector<std::pair<platform::Text, Long>> m_items;
  Long m_lIndex = -1;
};

class FakeListView : public FakeControl<platform::FormListView> {
 public:
  void Clear() override { m_items.clear(); }
  void Add(const platform::Text& sText) override { m_items.emplace_back(sText, false); }
  void Remove(Long lIndex) override { m_items.erase(m_items.begin() + (lIndex - 1)); }
  Long Count() const override { return static_cast<Long>(m_items.size()); }
  platform::Text Item(Long lIndex) const override { return At(lIndex).first; }
  Boolean Selected(Long lIndex) const override { return At(lIndex).second; }
  void Selected(Long lIndex, Boolean bSelected) override {
    m_items.at(static_cast<std::size_t>(lIndex - 1)).second = bSelected;
  }
  platform::Subscription OnClick(std::function<void()> handler) override {
    return m_click.Connect(std::move(handler));
  }
  platform::Subscription OnDblClick(std::function<void()> handler) override {
    return m_dblClick.Connect(std::move(handler));
  }

  /// The user highlights the item of that text alone by a click.
  void Click(const platform::Text& sText) {
    for (auto& [sItem, bSelected] : m_items) bSelected = sItem == sText;
    m_click.Raise();
  }
  /// The user adds the item of that text to the highlighted ones.
  void ControlClick(const platform::Text& sText) {
    for (auto& [sItem, bSelected] : m_items) bSelected = bSelected || sItem == sText;
    m_click.Raise();
  }
  void DblClick(const platform::Text& sText) {
    Click(sText);
    m_dblClick.Raise();
  }
  std::vector<platform::Text> Texts() const {
    std::vector<platform::Text> texts;
    for (const auto& item : m_items) texts.push_back(item.first);
    return texts;
  }

 private:
  const std::pair<platform::Text, bool>& At(Long lIndex) const {
    return m_items.at(static_cast<std::size_t>(lIndex - 1));
  }

  std::deque<std::pair<platform::Text, bool>> m_items;
  platform::Signal<> m_click;
  platform::Signal<> m_dblClick;
};

/// A form that makes the control of a name when it is first asked for.
class FakeForm : public platform::Form {
 public:
  explicit FakeForm(std::function<void(FakeForm&)> user) : m_user(std::move(user)) {}

  platform::Text Title() const override { return m_sTitle; }
  void Title(const platform::Text& sTitle) override { m_sTitle = sTitle; }
  FakeCaption& Caption(const platform::Text& sName) override { return Get(m_captions, sName); }
  FakeTextBox& TextBox(const platform::Text& sName) override { return Get(m_textBoxes, sName); }
  FakeButton& Button(const platform::Text& sName) override { return Get(m_buttons, sName); }
  FakeCheckBox& CheckBox(const platform::Text& sName) override { return Get(m_checkBoxes, sName); }
  FakeDropDownList& DropDownList(const platform::Text& sName) override {
    return Get(m_dropDownLists, sName);
  }
  FakeListView& ListView(const platform::Text& sName) override { return Get(m_listViews, sName); }
  void DefaultButton(const platform::Text& sButton) override { m_sDefaultButton = sButton; }
  void CancelButton(const platform::Text& sButton) override { m_sCancelButton = sButton; }
  platform::Text DefaultButton() const { return m_sDefaultButton; }
  platform::Text CancelButton() const { return m_sCancelButton; }
  /// Lets the user act once; the test has to see to it that the form is hidden then.
  void ShowModal() override {
    m_bShown = true;
    ++m_nShown;
    if (m_user) m_user(*this);
  }
  void Hide() override { m_bShown = false; }
  Boolean Shown() const { return m_bShown; }
  int TimesShown() const { return m_nShown; }

  /// The control of that name, which the dialog must have asked for before.
  platform::FormControl& Known(const platform::Text& sName) {
    platform::FormControl* known = nullptr;
    const auto look = [&](const auto& controls) {
      const auto at = controls.find(sName);
      if (at != controls.end()) known = at->second.get();
    };
    look(m_captions);
    look(m_textBoxes);
    look(m_buttons);
    look(m_checkBoxes);
    look(m_dropDownLists);
    look(m_listViews);
    if (!known) throw platform::Failure(3265, "The form has no control \"" + sName + "\".");
    return *known;
  }

  void PressEnter() {
    if (!m_sDefaultButton.empty()) Button(m_sDefaultButton).Click();
  }
  void PressEscape() {
    if (!m_sCancelButton.empty()) Button(m_sCancelButton).Click();
  }

 private:
  template <class Control>
  static Control& Get(std::map<platform::Text, std::unique_ptr<Control>>& controls,
                      const platform::Text& sName) {
    auto& control = controls[sName];
    if (!control) control = std::make_unique<Control>();
    return *control;
  }

  std::function<void(FakeForm&)> m_user;
  platform::Text m_sTitle;
  platform::Text m_sDefaultButton;
  platform::Text m_sCancelButton;
  Boolean m_bShown = false;
  int m_nShown = 0;
  std::map<platform::Text, std::unique_ptr<FakeCaption>> m_captions;
  std::map<platform::Text, std::unique_ptr<FakeTextBox>> m_textBoxes;
  std::map<platform::Text, std::unique_ptr<FakeButton>> m_buttons;
  std::map<platform::Text, std::unique_ptr<FakeCheckBox>> m_checkBoxes;
  std::map<platform::Text, std::unique_ptr<FakeDropDownList>> m_dropDownLists;
  std::map<platform::Text, std::unique_ptr<FakeListView>> m_listViews;
};

/// Hands out fake forms and keeps the last one of each name for the test to look at.
class FakeForms : public platform::Forms {
 public:
  std::shared_ptr<platform::Form> Load(const platform::Text& sFormName) override {
    auto form = std::make_shared<FakeForm>([this, sFormName](FakeForm& shown) {
      if (const auto& user = m_users[sFormName]) user(shown);
    });
    m_forms[sFormName] = form;
    return form;
  }

  /// What the user does each time the form of that name is shown.
  void WhenShown(const platform::Text& sFormName, std::function<void(FakeForm&)> user) {
    m_users[sFormName] = std::move(user);
  }
  FakeForm& Last(const platform::Text& sFormName) { return *m_forms.at(sFormName); }
  bool WasLoaded(const platform::Text& sFormName) const { return m_forms.contains(sFormName); }

 private:
  std::map<platform::Text, std::function<void(FakeForm&)>> m_users;
  std::map<platform::Text, std::shared_ptr<FakeForm>> m_forms;
};

}  // namespace orvane::fakes
