// What the status bar says beside a control's own line: whether the document is read-only, which
// server is shown and as whom, how many rows a list has. User-interface thread.
#pragma once

#include <QObject>

#include "console/session/scope_tree_item.h"

class QLabel;
class QStatusBar;

namespace orvane::console {

class Document;
class ResultPane;

class WindowStatus final : public QObject {
  Q_OBJECT

 public:
  /// Belongs to the bar.
  explicit WindowStatus(QStatusBar& bar);

  void ShowDocument(const Document& document);
  /// The server of the item; null when nothing is shown.
  void ShowItem(const ScopeTreeItemPtr& item);
  void ShowRows(ResultPane& results);

 private:
  QLabel* AddLabel(QStatusBar& bar, const char* sName);

  QLabel* m_lblReadOnly;
  QLabel* m_lblServer;
  QLabel* m_lblItems;
};

}  // namespace orvane::console
