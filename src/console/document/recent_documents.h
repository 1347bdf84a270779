// The documents opened last, newest first, kept in the user's settings. User-interface thread.
// Shown by the window in its menu; what no longer exists is left out there.
#pragma once

#include <vector>

#include "platform/types.h"

class QSettings;

namespace orvane::console {

class RecentDocuments {
 public:
  static constexpr int kMaximum = 10;

  /// The settings must outlive this.
  explicit RecentDocuments(QSettings& settings) : m_settings(settings) {}

  /// Puts the document first; of more than kMaximum the oldest is dropped.
  void Add(const platform::Text& sPath);
  /// Forgets a document that could not be opened, if it is no longer there. One that is damaged, or
  /// may not be read, stays: it can be mended.
  void RemoveIfGone(const platform::Text& sPath);
  /// The documents that still exist; those that do not are forgotten.
  std::vector<platform::Text> List();

 private:
  QSettings& m_settings;
};

}  // namespace orvane::console
