// Whether there is unsaved work: compares what a save would write now with what was last read,
// written, or found by browsing. docs/document-format.md states the rule. User-interface thread.
#pragma once

#include <span>
#include <unordered_map>

#include "console/document/document_bag.h"

namespace orvane::console {

class DocumentState {
 public:
  /// Makes the bag's present content the one to compare with: after a load, after a save, and
  /// after browsing in a document that was unmodified before.
  void Rebase(const DocumentBag& bag);

  /// True when the bag differs from the base. The option texts are those of the connections
  /// opened in this session; a text that differs only by some of them at its end is equal, since
  /// connecting alone is no work to be saved.
  bool IsModified(const DocumentBag& bag, std::span<const platform::Text> optionTexts) const;

 private:
  std::unordered_map<platform::Text, StoredValue> m_base;
};

}  // namespace orvane::console
