// The main job, done by the program itself in its own window: opens the document, logs on through
// the real dialog, expands everything, looks at a table, its structure and a named query, and
// saves a copy. Mouse and keys are real events, so it works wherever a window can be drawn, also
// without a screen. User-interface thread.
#pragma once

#include <QDir>
#include <iosfwd>

#include "console/window/main_window.h"

namespace orvane::console {

class Tour final : public QObject {
  Q_OBJECT

 public:
  /// Pictures and the copy go into the folder, which is made; texts go to the stream.
  Tour(MainWindow& window, const QDir& folder, std::ostream& out);

  /// Fails with one sentence, a Failure, at the first thing that does not go as it should.
  void Run(const platform::Text& sDocument);

 private:
  using Condition = std::function<bool()>;

  void WaitFor(const char* sWhat, const Condition& condition);
  void AnswerDialogs();
  void Picture(const char* sName);
  void Expand(const ScopeTreeItemPtr& item);
  void ExpandEverything(const ScopeTreeItemPtr& item);
  void Select(const ScopeTreeItemPtr& item);
  void ChooseView(const platform::Text& sViewName);
  void PrintTree(const ScopeTreeItem& item, int iLevel);
  void PrintRows(const platform::RecordsetPtr& recordset);
  void PrintList();
  void PrintModel(const QAbstractItemModel& model, int iMostRows);
  ScopeTreeItemPtr FindTable() const;
  ScopeTreeItemPtr FirstOf(const ScopeTreeItemPtr& item, const char* sType) const;

  MainWindow& m_window;
  QDir m_folder;
  std::ostream& m_out;
  platform::Text m_sFailure;  // what a dialog said that should not have come up
};

}  // namespace orvane::console
