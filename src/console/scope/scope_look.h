// How scope items look in the window, in the tree and in lists: their drawings, the mark and colour
// of one that could not be opened, the faint slant of one being opened. User-interface thread.
#pragma once

#include <QIcon>

#include "console/session/item_look.h"

namespace orvane::console {

class ImageList;

class ScopeLook final : public ItemLook {
 public:
  /// The images outlive the look.
  explicit ScopeLook(const ImageList& images) : m_images(images) {}

  QVariant OfItem(const ScopeTreeItem& item, int iRole) const override;
  QVariant Picture(platform::Long lImage) const override;
  QVariant ToolTip(const QString& sText) const override;

 private:
  QIcon PictureOf(const ScopeTreeItem& item) const;

  const ImageList& m_images;
};

}  // namespace orvane::console
