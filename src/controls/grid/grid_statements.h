// The statements of a grid: what it asks of its connection, one statement at a time, and the
// opening of that connection anew. Each handles events while it runs, and one of them may be the
// end of the grid. Owned by the grid's core; user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "controls/grid/grid_query.h"
#include "controls/statements/row_sending.h"
#include "controls/statements/updatability.h"
#include "platform/services.h"

namespace orvane::controls {

class GridWindow;

class GridStatements {
 public:
  GridStatements(platform::ObjectFactoryPtr objects,
                 std::shared_ptr<platform::LongOperation> longOperation)
      : m_objects(std::move(objects)), m_longOperation(std::move(longOperation)) {}
  GridStatements(const GridStatements&) = delete;
  GridStatements& operator=(const GridStatements&) = delete;

  void Connection(const platform::ConnectionPtr& cn) { m_connection = cn; }
  const platform::ConnectionPtr& Connection() const { return m_connection; }

  /// True while a statement runs, which handles events.
  bool Running() const { return *m_running; }
  /// Ends with this, also while a statement still runs.
  std::weak_ptr<void> Life() const { return m_life; }
  /// Says that nothing can be asked of the connection while a statement runs.
  [[noreturn]] static void FailBusy();

  struct Fetched {
    platform::RecordsetPtr rs;
    platform::Long lRecordsAffected = 0;
  };
  /// Runs the statement; its rows are shown in the window while they come, and can be stopped
  /// there. `coming` is called when some are.
  Fetched Fetch(const GridQuery& query, Access access, GridWindow& window,
                std::function<void()> coming);
  /// Runs the statement, which only reads, and shows nothing of it. Gives way to the user: what he
  /// does meanwhile ends it with failure::kCancelled.
  Fetched FetchBeneath(const GridQuery& query);
  /// Runs a statement that only reads; none without a connection.
  platform::RecordsetPtr Ask(const platform::Text& sSqlText, platform::Long lMaxRows,
                             platform::Long lTimeout);
  /// Runs a statement that changes one row for each of these rows of values, all of them or none,
  /// however long it takes.
  void Change(const platform::Text& sSqlText, platform::ParameterRows rows);
  bool CanFetchAgain(const platform::Text& sSqlText) const;
  /// Gives the sink all rows of the statement, which only reads.
  platform::FetchState FetchAgain(const platform::Text& sSqlText, const platform::RowSink& sink);
  /// Nothing may be done with rows of no table, or where nobody can be asked. Without a table it is
  /// the one that the recordset says it is of.
  controls::Updatability Updatability(const std::optional<RowTable>& table,
                                      const platform::Recordset& rs) const;
  /// The same of rows that the query has fetched.
  controls::Updatability Updatability(const GridQuery& query, const platform::Recordset& rs) const;
  /// Deletes the rows, all of them or none, as Send sends one.
  SentDeletion Delete(const platform::RecordsetPtr& rs, const std::vector<platform::RowIndex>& rows,
                      const controls::Updatability& updatability, platform::Long lTimeout);
  /// Sends one row; what goes wrong is told by the answer. The time-out is in seconds.
  Sent Send(const platform::RecordsetPtr& rs, platform::RowIndex row,
            const controls::Updatability& updatability, platform::Long lTimeout);
  /// Has work with rows done on another thread while the host tells of it, and passes on what it
  /// throws; here where there is no such host. No statement is run meanwhile.
  void Wait(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work) const;
  /// The same of work that nobody asked for just now: what the user does meanwhile ends it.
  void WaitGivingWay(const platform::Text& sWhat,
                     const std::function<void(std::stop_token)>& work) const;
  /// Has work done here in slices, with the host telling of it; all at once where there is no such
  /// host. False where it was cancelled. No statement is run meanwhile.
  bool InSlices(const platform::Text& sWhat, const std::function<bool()>& slice) const;
  /// Opens the connection again, with what it was opened with, and fails as that does.
  void Reopen();

 private:
  platform::CommandPtr Command(const platform::Text& sSqlText) const;
  /// With the limits of the query. Fails where there is nobody to ask.
  platform::CommandPtr CommandFor(const GridQuery& query, Access access) const;
  static Fetched Execute(platform::Command& command);
  /// Has something sent, with what goes wrong in the answer.
  template <class Answer, class Call>
  Answer Answered(const Call& ask);

  platform::ObjectFactoryPtr m_objects;
  std::shared_ptr<platform::LongOperation> m_longOperation;  ///< or none
  platform::ConnectionPtr m_connection;
  std::shared_ptr<bool> m_running = std::make_shared<bool>(false);
  std::shared_ptr<char> m_life = std::make_shared<char>();
};

}  // namespace orvane::controls
