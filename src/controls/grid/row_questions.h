// What is asked about the rows of a grid: whether the selected ones are to be deleted, what becomes
// of those that somebody else has changed, and of those that are not stored. Owned by the editing
// of a grid; user-interface thread, and no question waits for its answer.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

#include "controls/editing/edit_session.h"

namespace orvane::controls {

class GridWindow;
class PendingReview;

class RowQuestions final : public QObject {
 public:
  /// What the answers lead to.
  struct Actions {
    std::function<void()> storeAll;
    std::function<void(platform::RowIndex)> goTo;
    std::function<void(platform::RowIndex)> leave;  ///< the row is to be sent
    std::function<void(const std::vector<platform::RowIndex>& rows)> deleteRows;
    std::function<void()> deleted;  ///< a row that is gone at the server has gone here, too
  };

  RowQuestions(GridWindow& window, EditSession& session, Actions actions, QObject* parent);

  /// Asks once, then has the selected rows deleted at the server.
  void DeleteSelectedRows();
  /// Why none can be deleted, as a sentence.
  platform::Text WhyNotDeleted() const;
  /// Rows beyond this number are not deleted at once.
  static constexpr platform::RowIndex kMostDeleted = 100'000;
  /// Rows were stored since they were listed.
  void RowsStored();
  /// Lists the rows that are not stored.
  void Review();
  /// Asks what becomes of a row that somebody else has changed; nothing of one without a conflict.
  void AskToSettle(platform::RowIndex row);

 private:
  void AddAsNew(platform::RowIndex row);
  std::vector<platform::RowIndex> SelectedRecordRows() const;

  GridWindow& m_window;
  EditSession& m_session;
  Actions m_actions;
  QPointer<PendingReview> m_review;
};

}  // namespace orvane::controls
