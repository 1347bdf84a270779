// The classes of the grid library and what their objects share.
// One Library a component, owned by its entry points; user-interface thread.
#pragma once

#include <QStringList>
#include <memory>
#include <string_view>
#include <vector>

#include "controls/editing/unsent_stash.h"
#include "controls/order/rows_states.h"
#include "platform/component.h"

namespace orvane::controls {

class Library {
 public:
  Library();

  /// Every class, as it is registered.
  static std::vector<platform::ComponentDescription> Classes();
  /// Owned by the library; null when there is no class of that progid.
  platform::ClassFactory* Factory(std::string_view sProgId) const;
  /// True when no object of the library is alive, nor a window of one.
  bool Unused() const;

 private:
  /// Each object keeps a reference to it.
  std::shared_ptr<void> m_life;
  std::shared_ptr<RowsStates> m_states;
  std::shared_ptr<UnsentStash> m_unsent;
  std::shared_ptr<QStringList> m_cellQueries;
  std::unique_ptr<platform::ClassFactory> m_tableEditor;
  std::unique_ptr<platform::ClassFactory> m_queryResults;
  std::unique_ptr<platform::ClassFactory> m_tableQuery;
};

}  // namespace orvane::controls
