// One of several users who edit the same rows, each over a connection of his own: what he edits,
// adds and deletes goes the way that edits of a grid go. His statements can be waited for.
#pragma once

#include <functional>
#include <span>

#include "controls/editing/row_outbox.h"
#include "controls/grid/grid_statements.h"
#include "tests/controls/historian_server.h"

namespace orvane::controls {

/// Asks before each statement that somebody is about to send.
class Between final : public platform::ObjectFactory {
 public:
  explicit Between(std::shared_ptr<tests::HistorianServer> server) : m_server(std::move(server)) {}
  platform::ConnectionPtr CreateConnection() override { return m_server->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    if (before) before();
    return m_server->CreateCommand();
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  std::function<void()> before;

 private:
  std::shared_ptr<tests::HistorianServer> m_server;
};

/// A user with the rows that he sees, and their way to the server.
class CompetingUser {
 public:
  using RecordsetPtr = platform::RecordsetPtr;
  using RowIndex = platform::RowIndex;

  enum class Outcome : std::uint8_t { Stored, Conflict, Refused };

  /// What comes of sending rows: nothing is stored where one of them stands against it.
  struct Came {
    Outcome outcome = Outcome::Stored;
    RowIndex row = 0;  ///< the one that stands against it
    friend bool operator==(const Came&, const Came&) = default;
  };

  friend void PrintTo(const Came& came, std::ostream* out) {
    *out << static_cast<int>(came.outcome) << " row " << came.row;
  }

  /// Every sending of these rows goes through the handler, which has it done by the call.
  using Handler = std::function<void(CompetingUser& user, std::span<const RowIndex> rows,
                                     const std::function<Came()>& call)>;

  CompetingUser(const std::shared_ptr<tests::HistorianServer>& server, const Handler& handler)
      : between(std::make_shared<Between>(server)),
        session([](const auto&) {}),
        outbox(session, Server(handler), {}, nullptr),
        m_objects(server),
        m_connection(server->Connect()),
        m_statements(between, nullptr) {
    m_statements.Connection(m_connection);
    Refresh();
  }
  CompetingUser(const CompetingUser&) = delete;
  CompetingUser& operator=(const CompetingUser&) = delete;

  void Refresh() {
    const RecordsetPtr rs = m_objects->Run(m_connection, "SELECT * FROM P..T");
    if (m_can.table.key.empty()) m_can = UpdatabilityOf(*m_connection, {"P", "T", {}, {}}, *rs);
    outbox.Clear();
    session.Show(rs, m_can, ValueInput(), {});
  }
  platform::Recordset& Rows() const { return *session.Recordset(); }

  std::shared_ptr<Between> between;
  EditSession session;
  RowOutbox outbox;

 private:
  RowOutbox::Server Server(const Handler& handler) {
    // What was sent and came to nothing says so by a conflict or by a sentence.
    const auto came = [](const auto& reply, RowIndex row, const QString& sWhyNot) -> Came {
      const bool bConflict = reply.answer && reply.answer->conflict;
      const bool bAsItWas = sWhyNot.contains("would have changed");
      return {bConflict || bAsItWas ? Outcome::Conflict : Outcome::Refused, row};
    };
    RowOutbox::Server server;
    server.send = [=, this](const RecordsetPtr& rs, RowIndex row, const Updatability& updatable) {
      Sent sent;
      const RowIndex rows[] = {row};
      handler(*this, rows, [&]() -> Came {
        sent = m_statements.Send(rs, row, updatable, 0);
        if (sent.answer && !sent.answer->conflict) return {};
        return came(sent, row, sent.sWhyNot);
      });
      return sent;
    };
    server.remove = [=, this](const RecordsetPtr& rs, const std::vector<RowIndex>& rows,
                              const Updatability& updatable) {
      SentDeletion sent;
      handler(*this, rows, [&]() -> Came {
        sent = m_statements.Delete(rs, rows, updatable, 0);
        if (!sent.answer) return came(sent, -1, sent.sWhyNot);
        if (!sent.answer->refused) return {};
        return came(sent, *sent.answer->refused, QString::fromStdString(sent.answer->sWhyNot));
      });
      return sent;
    };
    return server;
  }

  std::shared_ptr<tests::HistorianServer> m_objects;
  platform::ConnectionPtr m_connection;
  GridStatements m_statements;
  Updatability m_can;
};

}  // namespace orvane::controls
