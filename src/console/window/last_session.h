// The document that was open when the console ended, and the item that was looked at: the next
// start brings them back where the user wants that. Nothing is connected for it, so that an item
// beneath a server comes back as its server. Kept in the user's settings; used by the window, on
// the user-interface thread.
#pragma once

#include "console/session/scope_tree.h"

class QSettings;

namespace orvane::console {

class LastSession {
 public:
  /// The settings must outlive this.
  explicit LastSession(QSettings& settings) : m_settings(settings) {}

  bool IsWanted() const;
  /// Where it is not wanted, what is kept is forgotten.
  void Wanted(bool bWanted);
  /// Keeps where that is wanted: the document, by its absolute path or empty when it has no file,
  /// and the item, which may be null, with those above it.
  void Keep(const platform::Text& sDocument, const ScopeTreeItem* item);
  /// Empty where none is kept.
  platform::Text Document() const;
  /// Of the item that is kept and those above it the deepest that the tree has; null when it has
  /// none.
  ScopeTreeItemPtr Item(const ScopeTree& tree) const;

 private:
  QSettings& m_settings;
};

}  // namespace orvane::console
