// Column headers and sub-items as the console keeps them for a scope item or a list row.
// User-interface thread.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "platform/console/scope_items.h"

namespace orvane::console {

class HostedColumnHeaders final : public platform::ColumnHeaders {
 public:
  struct Header {
    platform::Text sKey;
    platform::Text sText;
    platform::Long lWidth = 0;
  };

  /// The handler is called after every change.
  explicit HostedColumnHeaders(std::function<void()> changed = {})
      : m_changed(std::move(changed)) {}

  void Clear() override;
  /// Puts the header at the position; one beyond the end is appended.
  void Add(platform::Long lIndex, const platform::Text& sKey, const platform::Text& sText,
           platform::Long lWidth) override;

  const std::vector<Header>& Headers() const noexcept { return m_headers; }

 private:
  std::vector<Header> m_headers;
  std::function<void()> m_changed;
};

class HostedSubItems final : public platform::ListSubItems {
 public:
  /// The handler is called after every change.
  explicit HostedSubItems(std::function<void()> changed = {}) : m_changed(std::move(changed)) {}

  void Clear() override;
  void Add(platform::Long lIndex, const platform::Text& sKey, const platform::Text& sText) override;

  /// The texts from position 1 on; a position never filled is empty.
  const std::vector<platform::Text>& Texts() const noexcept { return m_texts; }

 private:
  std::vector<platform::Text> m_texts;
  std::function<void()> m_changed;
};

}  // namespace orvane::console
