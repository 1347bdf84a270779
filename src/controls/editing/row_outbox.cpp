#include "controls/editing/row_outbox.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <utility>

namespace orvane::controls {

using platform::RecordsetPtr;
using platform::RowIndex;
using platform::RowState;

namespace {

/// Between two looks whether a grid that was at work has done.
constexpr std::chrono::milliseconds kBetweenTries{200};

}  // namespace

RowOutbox::RowOutbox(EditSession& session, Server server, Events events, QObject* parent)
    : QObject(parent),
      m_session(session),
      m_server(std::move(server)),
      m_events(std::move(events)) {
  m_later.setSingleShot(true);
  m_later.setInterval(kBetweenTries);
  connect(&m_later, &QTimer::timeout, this, [this] { SendLeft(); });
}

void RowOutbox::Leave(RowIndex row) {
  if (!m_session.Recordset()) return;
  if (!std::ranges::binary_search(m_session.Pending(), row)) return;
  m_left.insert(row);
  // The cell is still being left; sending may take a while and handle other events.
  QTimer::singleShot(0, this, [this] { SendLeft(); });
}

void RowOutbox::SendAll() {
  for (const RowIndex row : m_session.Pending()) m_left.insert(row);
  SendLeft();
}

void RowOutbox::Delete(const std::vector<RowIndex>& rows) {
  const auto toSend = m_session.Delete(rows);
  if (toSend.empty()) {
    // Rows that the server has never seen are gone at once.
    if (!rows.empty() && m_events.deleted) m_events.deleted();
    return;
  }
  const RecordsetPtr rs = m_session.Recordset();
  const QPointer<RowOutbox> self(this);
  const End end = SendDeletion(rs, toSend);
  if (!self || end != End::Later || m_session.Recordset() != rs) return;
  m_left.insert(toSend.begin(), toSend.end());
  m_later.start();
}

void RowOutbox::SendLeft() {
  if (m_bSending) return;
  m_bSending = true;
  const QPointer<RowOutbox> self(this);
  const RecordsetPtr rs = m_session.Recordset();
  End end = End::Done;
  while (rs && m_session.Recordset() == rs && !m_left.empty() && end != End::Later) {
    end = SendNext(rs);
    if (!self) return;
    // The others would wait for the same server in vain.
    if (end == End::Lost) m_left.clear();
  }
  m_bSending = false;
  // Also what was left of other rows, which are shown since.
  if (!m_left.empty()) m_later.start();
}

std::vector<RowIndex> RowOutbox::DeletedAmongLeft() const {
  std::vector<RowIndex> rows;
  for (const RowIndex row : m_session.Pending()) {
    const bool bDeleted = m_session.Recordset()->StateAt(row) == RowState::Deleted;
    if (bDeleted && m_left.contains(row)) rows.push_back(row);
  }
  return rows;
}

RowOutbox::End RowOutbox::SendNext(const RecordsetPtr& rs) {
  std::vector<RowIndex> rows = DeletedAmongLeft();
  if (rows.empty()) rows.push_back(*m_left.begin());
  for (const RowIndex row : rows) m_left.erase(row);
  const QPointer<RowOutbox> self(this);
  const bool bDeleted = std::ranges::binary_search(m_session.Pending(), rows.front()) &&
                        rs->StateAt(rows.front()) == RowState::Deleted;
  const End end = bDeleted ? SendDeletion(rs, rows) : SendRow(rs, rows.front());
  if (self && end == End::Later && m_session.Recordset() == rs) {
    m_left.insert(rows.begin(), rows.end());
  }
  return end;
}

template <class Answer>
RowOutbox::End RowOutbox::Unanswered(const Reply<Answer>& reply,
                                     const std::vector<RowIndex>& rows) {
  if (reply.bBusy) return End::Later;
  for (const RowIndex row : rows) m_session.Remark(row, reply.sWhyNot);
  if (!reply.bLost) return End::Refused;
  if (m_events.lost) m_events.lost(reply.sWhyNot);
  return End::Lost;
}

RowOutbox::End RowOutbox::SendRow(const RecordsetPtr& rs, RowIndex row) {
  if (!std::ranges::binary_search(m_session.Pending(), row)) return End::Done;
  if (const QString sWhyNot = m_session.WhyNotFit(row); !sWhyNot.isEmpty()) {
    m_session.Remark(row, sWhyNot);
    return End::Refused;
  }
  const RowState state = rs->StateAt(row);
  const QPointer<RowOutbox> self(this);
  if (m_events.sending) m_events.sending(true);
  const Sent sent = m_server.send(rs, row, m_session.Updatability());
  if (!self) return End::Done;
  if (m_events.sending) m_events.sending(false);
  if (m_session.Recordset() != rs) return End::Done;
  if (!sent.answer) return Unanswered(sent, {row});
  if (sent.answer->conflict) {
    m_session.Conflict(row, *sent.answer->conflict);
    if (m_events.conflict) m_events.conflict(row);
    return End::Refused;
  }
  m_session.Stored(row, sent.answer->stored);
  if (m_events.stored) m_events.stored(state);
  return End::Done;
}

RowOutbox::End RowOutbox::SendDeletion(const RecordsetPtr& rs, const std::vector<RowIndex>& rows) {
  const QPointer<RowOutbox> self(this);
  if (m_events.sending) m_events.sending(true);
  const SentDeletion sent = m_server.remove(rs, rows, m_session.Updatability());
  if (!self) return End::Done;
  if (m_events.sending) m_events.sending(false);
  if (m_session.Recordset() != rs) return End::Done;
  if (!sent.answer) return Unanswered(sent, rows);
  if (sent.answer->refused) {
    Refuse(rows, *sent.answer);
    return End::Refused;
  }
  m_session.Deleted(rows);
  if (m_events.deleted) m_events.deleted();
  return End::Done;
}

void RowOutbox::Refuse(const std::vector<RowIndex>& rows, const DeletedRows& answer) {
  const RowIndex refused = *answer.refused;
  for (const RowIndex row : rows) {
    if (row == refused) continue;
    m_session.Remark(row,
                     "Not deleted, as another of the rows to be deleted with it could not be: see "
                     "to that one, then store the changes.");
  }
  if (answer.conflict) {
    m_session.Conflict(refused, *answer.conflict);
    if (m_events.conflict) m_events.conflict(refused);
  } else {
    m_session.Remark(refused, QString::fromStdString(answer.sWhyNot));
  }
}

}  // namespace orvane::controls
