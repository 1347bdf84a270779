// Result views, the view that shows them and the selection, as the console presents them.
// Implemented by the host, read and filled by the snap-in; user-interface thread.
#pragma once

#include <memory>

#include "platform/console/scope_items.h"

namespace orvane::platform {

/// One row of a list view.
class ListItem {
 public:
  ListItem() = default;
  ListItem(const ListItem&) = delete;
  ListItem& operator=(const ListItem&) = delete;
  virtual ~ListItem() = default;

  virtual platform::ListSubItems& ListSubItems() = 0;
};

/// The rows of a list view, in the order added.
class ListItems {
 public:
  ListItems() = default;
  ListItems(const ListItems&) = delete;
  ListItems& operator=(const ListItems&) = delete;
  virtual ~ListItems() = default;

  /// Appends a row without a key; the icon is an image number of the snap-in's lists, from 1.
  /// The reference lives until the view is closed.
  virtual ListItem& Add(const Text& sText, Long lIcon) = 0;
  virtual Long Count() const = 0;
};

/// A result view: a list, or a control created from a progid.
class ResultView {
 public:
  ResultView() = default;
  ResultView(const ResultView&) = delete;
  ResultView& operator=(const ResultView&) = delete;
  virtual ~ResultView() = default;

  virtual Text Name() const = 0;
  /// The scope item whose results the view shows.
  virtual platform::ScopeItemPtr ScopeItem() const = 0;
  virtual platform::ListItems& ListItems() = 0;
  /// The control of a control view; none in a list view. Fails when it could not be created.
  virtual ObjectPtr Control() const = 0;
};

/// Selection types by the numbers that the console publishes.
constexpr Long kSelectionSingleScopeItem = 0;
constexpr Long kSelectionSingleListItem = 1;
constexpr Long kSelectionMultipleScopeItems = 2;
constexpr Long kSelectionMultipleListItems = 3;
constexpr Long kSelectionMixed = 4;
constexpr Long kSelectionNothing = 5;

class Selection {
 public:
  Selection() = default;
  Selection(const Selection&) = delete;
  Selection& operator=(const Selection&) = delete;
  virtual ~Selection() = default;

  virtual Long Type() const = 0;
  virtual Long ScopeItemCount() const = 0;
  /// By position from 1; fails with 9 outside.
  virtual platform::ScopeItemPtr ScopeItem(Long lIndex) const = 0;
};

/// The console window's view.
class View {
 public:
  View() = default;
  View(const View&) = delete;
  View& operator=(const View&) = delete;
  virtual ~View() = default;

  /// Makes the item the selected one and shows its current state.
  virtual void SelectScopeItem(const ScopeItemPtr& item) = 0;
  /// Shows the selected item's current state: its name, its list's rows and the enabled commands.
  virtual void RefreshSelection() = 0;
};

/// Verbs by the numbers that the console publishes.
constexpr Long kVerbRefresh = 32774;

class ConsoleVerbs {
 public:
  ConsoleVerbs() = default;
  ConsoleVerbs(const ConsoleVerbs&) = delete;
  ConsoleVerbs& operator=(const ConsoleVerbs&) = delete;
  virtual ~ConsoleVerbs() = default;

  virtual Boolean Enabled(Long lVerb) const = 0;
  virtual void Enabled(Long lVerb, Boolean bEnabled) = 0;
};

}  // namespace orvane::platform
