#include "controls/editing/row_outbox.h"

#include <QPointer>
#include <algorithm>
#include <chrono>
#include <iterator>
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
  connect(&m_later, &QTimer::timeout, this, [this] { SendLeft(); });
}

void RowOutbox::Clear() {
  m_left.clear();
  TellOfProgress();
}

void RowOutbox::Stop() {
  Clear();
}

void RowOutbox::Leave(RowIndex row) {
  if (!m_session.IsPending(row)) return;
  m_left.insert(row);
  m_bLookForDeleted = true;
  // The cell is still being left; sending may take a while and handle other events.
  QTimer::singleShot(0, this, [this] { SendLeft(); });
}

void RowOutbox::SendAll() {
  for (const RowIndex row : m_session.Pending()) m_left.insert(row);
  m_bLookForDeleted = true;
  if (m_left.size() > kRowsAtOnce) m_ofAll = static_cast<RowIndex>(m_left.size());
  SendLeft();
}

void RowOutbox::TellOfProgress() {
  if (m_ofAll == 0) return;
  const auto left = static_cast<RowIndex>(m_left.size());
  const RowIndex of = m_left.empty() ? std::exchange(m_ofAll, 0) : m_ofAll;
  if (m_events.progress) m_events.progress(std::max<RowIndex>(0, of - left), of);
}

bool RowOutbox::Delete(const std::vector<RowIndex>& rows) {
  const QPointer<RowOutbox> self(this);
  const auto toSend = m_session.Delete(rows);
  if (!self) return true;
  if (!toSend) return false;
  if (toSend->empty()) {
    // Rows that the server has never seen are gone at once.
    if (!rows.empty() && m_events.deleted) m_events.deleted();
    return true;
  }
  const RecordsetPtr rs = m_session.Recordset();
  const End end = SendDeletion(rs, *toSend);
  if (!self || end != End::Later || m_session.Recordset() != rs) return true;
  m_left.insert(toSend->begin(), toSend->end());
  m_bLookForDeleted = true;
  m_later.start(kBetweenTries);
  return true;
}

void RowOutbox::SendLeft() {
  if (m_bSending) return;
  m_bSending = true;
  const QPointer<RowOutbox> self(this);
  const RecordsetPtr rs = m_session.Recordset();
  End end = End::Done;
  for (int n = 0; n < kRowsAtOnce && rs && m_session.Recordset() == rs && !m_left.empty(); ++n) {
    end = SendNext(rs);
    if (!self) return;
    // The others would wait for the same server in vain, or somebody waits no more.
    if (end == End::Lost || end == End::Stopped) m_left.clear();
    if (end == End::Later) break;
  }
  m_bSending = false;
  TellOfProgress();
  if (m_left.empty()) return;
  // Also what was left of other rows, which are shown since.
  m_later.start(end == End::Later || m_session.Recordset() != rs ? kBetweenTries
                                                                 : std::chrono::milliseconds(0));
}

// Those among the rows to be sent that are to be deleted go together, or else the first one.
std::vector<RowIndex> RowOutbox::TakeNext() {
  std::vector<RowIndex> rows;
  const auto isDeleted = [&](RowIndex row) {
    return m_session.IsPending(row) && m_session.Recordset()->StateAt(row) == RowState::Deleted;
  };
  if (m_bLookForDeleted) std::ranges::copy_if(m_left, std::back_inserter(rows), isDeleted);
  m_bLookForDeleted = false;
  if (rows.empty()) rows.push_back(*m_left.begin());
  for (const RowIndex row : rows) m_left.erase(row);
  return rows;
}

RowOutbox::End RowOutbox::SendNext(const RecordsetPtr& rs) {
  const std::vector<RowIndex> rows = TakeNext();
  const QPointer<RowOutbox> self(this);
  const bool bDeleted =
      m_session.IsPending(rows.front()) && rs->StateAt(rows.front()) == RowState::Deleted;
  const End end = bDeleted ? SendDeletion(rs, rows) : SendRow(rs, rows.front());
  if (self && end == End::Later && m_session.Recordset() == rs) {
    m_left.insert(rows.begin(), rows.end());
    m_bLookForDeleted = true;
  }
  return end;
}

template <class Answer>
RowOutbox::End RowOutbox::Unanswered(const Reply<Answer>& reply,
                                     const std::vector<RowIndex>& rows) {
  if (reply.bBusy) return End::Later;
  m_session.Remark(rows, reply.sWhyNot);
  if (reply.bCancelled) return End::Stopped;
  if (!reply.bLost) return End::Refused;
  if (m_events.lost) m_events.lost(reply.sWhyNot);
  return End::Lost;
}

RowOutbox::End RowOutbox::SendRow(const RecordsetPtr& rs, RowIndex row) {
  if (!m_session.IsPending(row)) return End::Done;
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
  if (!self) return End::Done;
  if (m_events.deleted) m_events.deleted();
  return End::Done;
}

void RowOutbox::Refuse(const std::vector<RowIndex>& rows, const DeletedRows& answer) {
  const RowIndex refused = *answer.refused;
  std::vector<RowIndex> others(rows);
  std::erase(others, refused);
  m_session.Remark(others,
                   "Not deleted, as another of the rows to be deleted with it could not be: see "
                   "to that one, then store the changes.");
  if (answer.conflict) {
    m_session.Conflict(refused, *answer.conflict);
    if (m_events.conflict) m_events.conflict(refused);
  } else {
    m_session.Remark(refused, QString::fromStdString(answer.sWhyNot));
  }
}

}  // namespace orvane::controls
