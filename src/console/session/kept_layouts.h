// How the controls of scope items were laid out, kept by the items' places in the tree: the next
// control of an item is given what the last one had, and the document keeps all of them. What a
// layout says is the control's own. Part of the session; user-interface thread.
#pragma once

#include <map>

#include "console/session/scope_tree_item.h"

namespace orvane::console {

class KeptLayouts {
 public:
  /// By places; see PlaceOf.
  using Layouts = std::map<platform::Text, platform::Text>;

  /// What tells the item from all others, and those beneath it from the rest: what its key and the
  /// keys above add to one another, with "/" between and "\" before each of both in a name. Empty
  /// for the static item, and for one that was removed.
  static platform::Text PlaceOf(const ScopeTreeItem& item) { return PlaceOf(item, item.Key()); }
  /// The place that it would have with that key.
  static platform::Text PlaceOf(const ScopeTreeItem& item, const platform::Text& sKey);

  const Layouts& All() const noexcept { return m_layouts; }
  /// Replaces everything.
  void All(Layouts layouts) { m_layouts = std::move(layouts); }
  /// Empty where nothing was changed.
  platform::Text Of(const platform::Text& sPlace) const;
  void Keep(const platform::Text& sPlace, platform::Text sLayout);
  /// The item is called otherwise from now on, and so is what lies beneath it.
  void Carry(const platform::Text& sFrom, const platform::Text& sTo);
  /// The item is gone for good, with what lies beneath it.
  void Forget(const platform::Text& sPlace) { Take(sPlace); }

 private:
  /// Takes out what is kept of the place and beneath it, by what follows the place.
  Layouts Take(const platform::Text& sPlace);

  Layouts m_layouts;
};

}  // namespace orvane::console
