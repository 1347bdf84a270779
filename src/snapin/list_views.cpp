// The list views. The console lists child items by itself; only a table's structure is filled in.
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

void SnapIn::ResultViews_Initialize(platform::ResultView& view) {
  Guard([&] {
    const auto item = InTree(view.ScopeItem());
    if (item->NodeTypeName() == node_type::kTable &&
        view.Name() == view_name::kTableStructureList) {
      ShowTableStructure(view, *TagAs<nodes::TableNode>(*item));
    }
  });
}

}  // namespace orvane::snapin
