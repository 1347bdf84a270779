// A result view as the session makes it for the selected scope item: a list, or a control.
// Lives from the moment it is shown until another one takes its place. User-interface thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>

#include "console/session/list_texts.h"
#include "console/session/scope_tree_item.h"
#include "platform/console/snap_in.h"
#include "platform/grids/grids.h"

namespace orvane::console {

class HostedListItem final : public platform::ListItem {
 public:
  HostedListItem(platform::Text sText, platform::Long lIcon, std::function<void()> changed)
      : m_sText(std::move(sText)), m_lIcon(lIcon), m_subItems(std::move(changed)) {}

  platform::ListSubItems& ListSubItems() override { return m_subItems; }

  const platform::Text& Text() const noexcept { return m_sText; }
  platform::Long Icon() const noexcept { return m_lIcon; }
  const std::vector<platform::Text>& SubItemTexts() const { return m_subItems.Texts(); }

 private:
  platform::Text m_sText;
  platform::Long m_lIcon;
  HostedSubItems m_subItems;
};

class HostedListItems final : public platform::ListItems {
 public:
  platform::ListItem& Add(const platform::Text& sText, platform::Long lIcon) override;
  platform::Long Count() const override { return static_cast<platform::Long>(m_rows.size()); }

  const std::deque<HostedListItem>& Items() const noexcept { return m_rows; }
  /// Called after a row was added or its texts have changed.
  void OnChange(std::function<void()> handler) { m_changed = std::move(handler); }

 private:
  std::deque<HostedListItem> m_rows;
  std::function<void()> m_changed;
};

class HostedResultView final : public platform::ResultView {
 public:
  HostedResultView(platform::ResultViewDescription description, ScopeTreeItemPtr item)
      : m_description(std::move(description)), m_item(std::move(item)) {}

  platform::Text Name() const override { return m_description.sName; }
  platform::ScopeItemPtr ScopeItem() const override { return m_item; }
  platform::ListItems& ListItems() override { return m_listItems; }
  platform::ObjectPtr Control() const override;

  const platform::ResultViewDescription& Description() const noexcept { return m_description; }
  const ScopeTreeItemPtr& Item() const noexcept { return m_item; }
  HostedListItems& Rows() noexcept { return m_listItems; }
  bool IsControl() const noexcept { return !m_description.sControlProgId.empty(); }
  /// The control, or null in a list and where it could not be created.
  const std::shared_ptr<platform::Control>& HostedControl() const noexcept { return m_control; }
  void HostedControl(std::shared_ptr<platform::Control> control) { m_control = std::move(control); }
  /// Why there is no control; empty when there is one or none is wanted.
  const platform::Text& ControlFailure() const noexcept { return m_sControlFailure; }
  void ControlFailure(platform::Text sFailure) { m_sControlFailure = std::move(sFailure); }

 private:
  platform::ResultViewDescription m_description;
  ScopeTreeItemPtr m_item;
  HostedListItems m_listItems;
  std::shared_ptr<platform::Control> m_control;
  platform::Text m_sControlFailure;
};

}  // namespace orvane::console
