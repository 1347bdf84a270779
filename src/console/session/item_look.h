// How the items of a session look in views: pictures, colours, tool tips. The session knows that
// they look like something and no more, so that it can be at work without a window; whoever shows
// it brings a look. User-interface thread.
#pragma once

#include <QVariant>

#include "platform/types.h"

namespace orvane::console {

class ScopeTreeItem;

class ItemLook {
 public:
  ItemLook() = default;
  ItemLook(const ItemLook&) = delete;
  ItemLook& operator=(const ItemLook&) = delete;
  virtual ~ItemLook() = default;

  /// What a view is told of the item for the picture, tool tip, font and colour roles; nothing
  /// where the item looks like any other.
  virtual QVariant OfItem(const ScopeTreeItem& item, int iRole) const = 0;
  /// The picture of that number of the snap-in's folder lists.
  virtual QVariant Picture(platform::Long lImage) const = 0;
  /// A tool tip that shows the text as it is.
  virtual QVariant ToolTip(const QString& sText) const = 0;
};

}  // namespace orvane::console
