// The way of edited rows to the server: rows that were left, one at a time, and rows to be deleted,
// together. What comes of it is laid into the editing; what was refused stays there with its
// reason. Owned by the editing of a grid; user-interface thread, which handles events while
// something is sent.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include "controls/editing/edit_session.h"
#include "controls/statements/row_sending.h"

namespace orvane::controls {

class RowOutbox final : public QObject {
 public:
  /// Both send; they may handle events while they wait.
  struct Server {
    std::function<Sent(const platform::RecordsetPtr& rs, platform::RowIndex row,
                       const Updatability& updatability)>
        send;
    /// All of the rows or none.
    std::function<SentDeletion(const platform::RecordsetPtr& rs,
                               const std::vector<platform::RowIndex>& rows,
                               const Updatability& updatability)>
        remove;
  };
  struct Events {
    /// A row that had been this before was stored.
    std::function<void(platform::RowState before)> stored;
    std::function<void()> deleted;                       ///< all rows of a question were deleted
    std::function<void(platform::RowIndex)> conflict;    ///< somebody else has changed the row
    std::function<void(const QString& sSentence)> lost;  ///< the server cannot be reached
    std::function<void(bool bSending)> sending;          ///< something is sent from now on, or not
    /// So many of the rows that were to be stored have been sent, or all of them; not told of few.
    std::function<void(platform::RowIndex sent, platform::RowIndex of)> progress;
  };

  /// The session outlives this.
  RowOutbox(EditSession& session, Server server, Events events, QObject* parent);

  /// Other rows are shown: what was to be sent stays pending.
  void Clear();
  /// The row is sent when the event that left it is over, if there is something to send.
  void Leave(platform::RowIndex row);
  /// Sends all rows that are not stored; many in slices, between which the window goes on.
  void SendAll();
  /// What is not sent yet stays pending.
  void Stop();
  /// Deletes the rows at the server, all of them or none. False where they were not even marked, as
  /// that was cancelled.
  bool Delete(const std::vector<platform::RowIndex>& rows);

 private:
  enum class End : std::uint8_t { Done, Refused, Later, Lost, Stopped };
  /// As many are sent in less time than anybody waits for.
  static constexpr int kRowsAtOnce = 16;

  void SendLeft();
  End SendNext(const platform::RecordsetPtr& rs);
  End SendRow(const platform::RecordsetPtr& rs, platform::RowIndex row);
  End SendDeletion(const platform::RecordsetPtr& rs, const std::vector<platform::RowIndex>& rows);
  void Refuse(const std::vector<platform::RowIndex>& rows, const DeletedRows& answer);
  template <class Answer>
  End Unanswered(const Reply<Answer>& reply, const std::vector<platform::RowIndex>& rows);
  std::vector<platform::RowIndex> TakeNext();
  void TellOfProgress();

  EditSession& m_session;
  Server m_server;
  Events m_events;
  std::set<platform::RowIndex> m_left;  ///< rows to be sent
  bool m_bLookForDeleted = false;       ///< there may be some among them that are to be deleted
  bool m_bSending = false;
  platform::RowIndex m_ofAll = 0;  ///< rows of the last SendAll, until all are sent
  QTimer m_later;
};

}  // namespace orvane::controls
