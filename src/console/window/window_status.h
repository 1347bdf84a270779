// What the status bar says beside a control's own line: whether the document is read-only, which
// server is shown and as whom, how many rows a list has. User-interface thread.
#pragma once

#include <QObject>
#include <QString>

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

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel* AddLabel(QStatusBar& bar, const char* sName);
  /// Shows as much of the server as the bar has room for beside the rows.
  void FitServer();

  QStatusBar& m_bar;
  QString m_sServer;
  QString m_sLink;
  QLabel* m_lblReadOnly;
  QLabel* m_lblServer;
  QLabel* m_lblItems;
};

}  // namespace orvane::console
