// How the driver of fakes gives commands and answers what comes of them.
#include <gtest/gtest.h>

#include <utility>

#include "tests/fakes/fake_shown_form.h"
#include "tests/snapin/fake_driver.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::Text;

std::vector<platform::MenuItem> FakeDriver::MenuItems(const Text& sKey) {
  fakes::FakeContextMenu menu;
  snapIn->Views_AddTopMenuItems(console->CurrentView(), fakes::FakeSelection(Item(sKey)), menu,
                                true);
  std::vector<platform::MenuItem> items;
  for (const auto& top : menu.menus) {
    items.insert(items.end(), top.items.begin(), top.items.end());
  }
  return items;
}

std::vector<scenarios::MenuEntry> FakeDriver::Menu(const Text& sKey, scenarios::MenuWay way) {
  if (way != scenarios::MenuWay::RightClick && Item(sKey) != m_selected) Select(sKey);
  std::vector<scenarios::MenuEntry> entries;
  for (const auto& item : MenuItems(sKey)) entries.push_back({item.sCaption, item.bEnabled});
  return entries;
}

void FakeDriver::Choose(const Text& sKey, const Text& sCaption, scenarios::MenuWay) {
  if (Item(sKey) != m_selected) Select(sKey);
  for (const auto& item : MenuItems(sKey)) {
    if (item.sCaption != sCaption) continue;
    EXPECT_TRUE(item.bEnabled) << sCaption;
    FollowTree();
    Click(item.sName, sKey);
    console->ScopeItems().onRemoving = {};
    console->CurrentView().onSelect = {};
    return;
  }
  ADD_FAILURE() << "no " << sCaption << " in the menu of " << sKey;
}

std::vector<scenarios::ButtonSeen> FakeDriver::Toolbar() const {
  std::vector<scenarios::ButtonSeen> seen;
  const auto toolbar = std::dynamic_pointer_cast<fakes::FakeToolbar>(controlBar.attached);
  if (!toolbar) return seen;
  for (const auto& button : toolbar->Buttons().buttons) {
    seen.push_back(
        {button->Key(), button->sToolTip, button->lImage, button->Enabled(), button->Pressed()});
  }
  return seen;
}

void FakeDriver::Press(const Text& sButton) {
  auto& button = controlBar.attached->Buttons().Item(sButton);
  if (button.Enabled()) snapIn->Toolbar_ButtonClick(button);
}

Boolean FakeDriver::CanRefresh() const {
  return verbs.Enabled(platform::kVerbRefresh);
}

void FakeDriver::Refresh() {
  if (CanRefresh()) snapIn->Views_Refresh(console->CurrentView());
}

Boolean FakeDriver::IsHourglassShown() const {
  return ui->MousePointer() == platform::kMousePointerHourglass;
}

void FakeDriver::AnswerForm(scenarios::FormUser user) {
  m_formUsers.push_back(std::move(user));
  for (const char* sForm : {"OptionsDlg", "QueryDlg", "AddCatalogDlg", "TableQueryDlg"}) {
    forms->WhenShown(sForm, [this](fakes::FakeForm& form) { FormShown(form); });
  }
}

void FakeDriver::FormShown(fakes::FakeForm& form) {
  if (m_formUsers.empty()) {
    ADD_FAILURE() << "an unexpected dialog: " << form.Title();
    return form.Hide();
  }
  const auto user = std::move(m_formUsers.front());
  m_formUsers.pop_front();
  fakes::FakeShownForm shown(form);
  try {
    user(shown);
  } catch (const std::exception& e) {
    ADD_FAILURE() << form.Title() << ": " << e.what();
  }
  EXPECT_FALSE(form.Shown()) << form.Title() << " was left open";
  form.Hide();
}

void FakeDriver::AnswerBox(scenarios::BoxAnswer answer) {
  ui->answers.push_back(answer == scenarios::BoxAnswer::Yes ? platform::MsgBoxResult::Yes
                                                            : platform::MsgBoxResult::No);
}

std::vector<scenarios::BoxSeen> FakeDriver::TakeBoxes() {
  return std::exchange(ui->boxes, {});
}

}  // namespace orvane::snapin
