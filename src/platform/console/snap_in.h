// The events of the console, as the snap-in object receives them.
// All on the user-interface thread; no handler lets a failure out.
#pragma once

#include <vector>

#include "platform/console/console.h"
#include "platform/console/menus.h"
#include "platform/property_bag.h"

namespace orvane::platform {

/// Progid of the snap-in.
constexpr const char* kSnapInProgId = "ORVOLEDBSnapIn";

/// A result view of a node type, as the designer describes it. A view with an empty control
/// progid is a list.
struct ResultViewDescription {
  Text sName;
  Text sDisplayName;
  Text sDescription;
  Text sControlProgId;
  struct Column {
    Text sText;
    Long lWidth = 0;  ///< pixels at 96 dots an inch; 0 lets the console choose
  };
  std::vector<Column> columns;
};

/// A node type: its fixed name and GUID, how its items look, and the views it offers, the
/// default one first.
struct NodeTypeDescription {
  Text sName;
  Text sGuid;
  Text sDisplayName;
  Long lFolderImage = 0;  ///< image number in the folder lists, from 1
  std::vector<ResultViewDescription> resultViews;
  /// What lies beneath is read from a server, where others may change it: the console offers to
  /// read it anew.
  bool bReadFromServer = false;
};

/// The static description under which the snap-in registers with the console.
struct SnapInDescription {
  Text sName;
  Text sDisplayName;
  Text sDescription;
  Text sVersion;
  Text sProvider;
  Text sStaticNodeType;
  Text sSmallFolders;
  Text sSmallOpenFolders;
  Text sLargeFolders;
  std::vector<NodeTypeDescription> nodeTypes;
};

class SnapIn : public Object {
 public:
  virtual SnapInDescription Description() const = 0;

  virtual void SnapIn_Initialize() = 0;
  /// Returns false when a failure (already shown) kept the document from being read whole; the
  /// console then must not write the document again.
  virtual Boolean SnapIn_ReadProperties(PropertyBag& pb) = 0;
  /// Returns false when a failure (already shown) left the bag incomplete; the console then keeps
  /// the document it has.
  virtual Boolean SnapIn_WriteProperties(PropertyBag& pb) = 0;
  virtual void SnapIn_Unload() = 0;
  virtual void SnapIn_Terminate() = 0;

  virtual void ScopeItems_Initialize(const ScopeItemPtr& item) = 0;
  /// Returns false when a failure (already shown) ended the expansion; what was added before it
  /// stays, and expanding again is another try.
  virtual Boolean ScopeItems_Expand(const ScopeItemPtr& item) = 0;

  virtual void ResultViews_Initialize(ResultView& view) = 0;
  virtual void ResultViews_InitializeControl(ResultView& view) = 0;
  virtual void ResultViews_Activate(ResultView& view) = 0;
  virtual void ResultViews_Deactivate(ResultView& view) = 0;

  virtual void Views_AddTopMenuItems(View& view, const Selection& selection, ContextMenu& menu,
                                     Boolean bInsertionAllowed) = 0;
  virtual void Views_UpdateControlbar(View& view, const Selection& selection, Boolean bSelected,
                                      ControlBar& controlBar) = 0;
  virtual void Views_Select(View& view, const Selection& selection, Boolean bSelected,
                            ConsoleVerbs& verbs) = 0;
  virtual void Views_Refresh(View& view) = 0;

  /// The user picked the menu item of that name (MenuItem::sName).
  virtual void Menu_Click(const Text& sMenuItem, Long lIndex, const Selection& selection) = 0;
  virtual void Toolbar_ButtonClick(ToolbarButton& button) = 0;
};

}  // namespace orvane::platform
