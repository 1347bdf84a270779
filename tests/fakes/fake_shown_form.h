// A form without widgets under the hands of a scenario's user.
#pragma once

#include "tests/fakes/fake_forms.h"
#include "tests/scenarios/driver.h"

namespace orvane::fakes {

class FakeShownForm final : public scenarios::ShownForm {
 public:
  using Text = platform::Text;

  explicit FakeShownForm(FakeForm& form) : m_form(form) {}

  Text Title() const override { return m_form.Title(); }
  Boolean Enabled(const Text& sControl) const override { return m_form.Known(sControl).Enabled(); }
  Text Label(const Text& sControl) const override {
    return dynamic_cast<platform::Caption&>(m_form.Known(sControl)).Label();
  }
  Text BoxText(const Text& sTextBox) const override { return Known<FakeTextBox>(sTextBox).Text(); }
  void Type(const Text& sTextBox, const Text& sText) override {
    auto& box = Known<FakeTextBox>(sTextBox);
    if (box.Locked() || !box.Enabled()) return;
    // The first key takes the place of the whole text.
    box.Text(sText.substr(0, 1));
    for (std::size_t n = 1; n < sText.size(); ++n) box.Type(sText.substr(n, 1));
  }
  Boolean Checked(const Text& sCheckBox) const override {
    return Known<FakeCheckBox>(sCheckBox).Checked();
  }
  void Click(const Text& sButtonOrCheckBox) override {
    auto& control = m_form.Known(sButtonOrCheckBox);
    if (auto* button = dynamic_cast<FakeButton*>(&control)) {
      button->Click();
    } else if (auto& box = dynamic_cast<FakeCheckBox&>(control); box.Enabled()) {
      box.Checked(!box.Checked());
    }
  }
  std::vector<Text> Entries(const Text& sList) const override {
    auto& control = m_form.Known(sList);
    if (const auto* list = dynamic_cast<FakeListView*>(&control)) return list->Texts();
    const auto& list = dynamic_cast<FakeDropDownList&>(control);
    std::vector<Text> texts;
    for (Long l = 0; l < list.Count(); ++l) texts.push_back(list.Item(l));
    return texts;
  }
  Text Chosen(const Text& sDropDownList) const override {
    const auto& list = Known<FakeDropDownList>(sDropDownList);
    return list.ListIndex() < 0 ? Text() : list.Item(list.ListIndex());
  }
  void Choose(const Text& sList, const Text& sEntry) override {
    auto& control = m_form.Known(sList);
    if (!control.Enabled()) return;
    if (auto* list = dynamic_cast<FakeListView*>(&control)) {
      list->Click(sEntry);
      return;
    }
    const auto entries = Entries(sList);
    const auto at = std::find(entries.begin(), entries.end(), sEntry);
    if (at == entries.end()) throw platform::Failure(5, "The list has no \"" + sEntry + "\".");
    dynamic_cast<FakeDropDownList&>(control).ListIndex(static_cast<Long>(at - entries.begin()));
  }

 private:
  template <class Control>
  Control& Known(const Text& sControl) const {
    return dynamic_cast<Control&>(m_form.Known(sControl));
  }

  FakeForm& m_form;
};

}  // namespace orvane::fakes
