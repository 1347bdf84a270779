// What the window was like with each document, kept in the user's settings by the documents' paths:
// a matter of his screen, which a document that is shared says nothing of. Of the documents used
// last only. One for the window; user-interface thread.
#pragma once

#include "console/document/document_bag.h"

class QSettings;

namespace orvane::console {

class UserViews {
 public:
  static constexpr int kMaximum = 100;

  /// The settings must outlive this.
  explicit UserViews(QSettings& settings) : m_settings(settings) {}

  /// Puts what was kept for the document of that absolute path into the bag; false when there is
  /// nothing, or what is there cannot be read.
  platform::Boolean Read(const platform::Text& sPath, DocumentBag& bag) const;
  /// Keeps the bag for it; of more than kMaximum documents the one of longest ago is forgotten.
  void Keep(const platform::Text& sPath, const DocumentBag& bag);

 private:
  QSettings& m_settings;
};

}  // namespace orvane::console
