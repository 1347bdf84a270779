// Rows that a command asks a server for: those of a table, of one of its queries or of a statement.
// Used by the commands that print, watch and export rows; each fails with an Ending or as the
// server does. One thread.
#pragma once

#include <functional>

#include "controls/statements/time_range.h"
#include "tools/orvane/row_target.h"
#include "tools/orvane/server_access.h"

namespace orvane::tools {

struct RowSource {
  platform::ConnectionPtr cn;
  platform::Text sSql;
  platform::Text sInto;  ///< the table into which rows as SQL are inserted
  platform::Long lLimit;
  platform::Long lTimeout;  ///< in seconds
};

/// How a statement is run.
struct Running {
  std::optional<platform::Long> lLimit;    ///< takes the place of the source's; 0 is none
  std::optional<platform::Long> lTimeout;  ///< the same
  bool bChange = false;                    ///< the statement may change data
  bool bProgress = false;                  ///< told on a terminal
};

struct Fetched {
  platform::RowIndex rows = 0;
  bool bCut = false;
  platform::Long lLimit = 0;
  bool bRows = false;           ///< there are columns
  platform::Long lChanged = 0;  ///< rows, where there are none
};

/// The rows that the table's grid would show, or those of the range.
RowSource RowsOfTable(const ServerAccess& access, const platform::Text& sPath,
                      const std::optional<controls::TimeRange>& range);
/// The rows of the server's query of that name.
RowSource RowsOfQuery(const ServerAccess& access, const platform::Text& sServer,
                      const platform::Text& sQuery);
/// The statement is asked for when the server is connected: a password may stand before it.
RowSource RowsOfStatement(const ServerAccess& access, const platform::Text& sServer,
                          const std::function<platform::Text()>& statement);

/// Fetches them into the target.
Fetched Fetch(DataHost& host, const RowSource& source, const Running& running, RowTarget& target);
/// Ends the program with a sentence unless there were rows and all of them.
void EndUnlessAll(const Fetched& fetched);

/// All that is left on the standard input. Fails with an Ending.
platform::Text StandardInput();

}  // namespace orvane::tools
