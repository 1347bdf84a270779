// The texts of the extended options of every connection opened in this session, as a saved server
// would carry them at the end of its own. They tell a mere connection from unsaved work.
// Written where a session is opened, on any thread; read on the user-interface thread.
#pragma once

#include <mutex>
#include <vector>

#include "ado/provider.h"

namespace orvane::console {

class OptionTexts {
 public:
  /// Takes down the options of a session that was just opened. A session of a provider that lacks
  /// one of them has no such text.
  void Note(const ado::Session& session);
  /// Each text once, in the order in which they came.
  std::vector<platform::Text> All() const;

 private:
  mutable std::mutex m_mutex;
  std::vector<platform::Text> m_texts;
};

}  // namespace orvane::console
