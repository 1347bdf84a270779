// Whether there is unsaved work: compares what a save would write now with what was last read,
// written, or found by browsing. docs/document-format.md states the rule. User-interface thread.
#pragma once

#include <span>

#include "console/document/save_snapshot.h"

namespace orvane::console {

class DocumentState {
 public:
  /// Makes this the one to compare with: after a load, after a save, and after browsing in a
  /// document that was unmodified before.
  void Rebase(const SaveSnapshot& snapshot);

  /// True when the snapshot differs from the base. The option texts are those of the connections
  /// opened in this session; a text that differs only by some of them at its end is equal, since
  /// connecting alone is no work to be saved.
  bool IsModified(const SaveSnapshot& snapshot, std::span<const platform::Text> optionTexts) const;

 private:
  SaveSnapshot::TextsByName m_texts;
  std::vector<SaveSnapshot::Mark> m_marks;
};

}  // namespace orvane::console
