// Everything a console document holds: a bag for each snap-in, by its progid, and the view's bag.
// Filled by a save or by reading a file; user-interface thread.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "console/document/document_bag.h"

namespace orvane::console {

class DocumentContent {
 public:
  struct Section {
    platform::Text sProgId;
    std::unique_ptr<DocumentBag> bag;
  };

  /// The creator makes the persisted objects that are read from the bags.
  explicit DocumentContent(DocumentBag::ObjectCreator creator = {})
      : m_creator(std::move(creator)) {}

  /// The bag of the snap-in; an empty one is made when there is none. Owned by the content.
  DocumentBag& SnapIn(const platform::Text& sProgId);
  /// The bag of the snap-in, or null.
  const DocumentBag* FindSnapIn(const platform::Text& sProgId) const;
  /// The snap-ins' bags in the order in which they were made.
  const std::vector<Section>& SnapIns() const noexcept { return m_snapIns; }
  /// All that the snap-ins keep as texts: servers and their options are among them.
  std::vector<platform::Text> Texts() const;
  /// What the host itself keeps: how grids are laid out. Older documents have the window in
  /// it, too, which nobody reads.
  DocumentBag& View() noexcept { return m_view; }
  const DocumentBag& View() const noexcept { return m_view; }

 private:
  DocumentBag::ObjectCreator m_creator;
  std::vector<Section> m_snapIns;
  DocumentBag m_view;
};

}  // namespace orvane::console
