// The commands that ask a server of a document: rows, query, sql and structure. The password is
// asked for where the server wants one.
// Commands of the program orvane; each fails with an Ending or as the server does. One thread.
#pragma once

#include <functional>
#include <optional>

#include "controls/statements/time_range.h"
#include "nodes/server_node.h"
#include "nodes/servers_node.h"
#include "nodes/table_node.h"
#include "tools/orvane/data_host.h"
#include "tools/orvane/row_output.h"

namespace orvane::tools {

/// How rows are wanted.
struct RowWishes {
  RowForm form = RowForm::Text;
  std::optional<platform::Long> lLimit;    ///< takes the place of the document's; 0 is none
  std::optional<platform::Long> lTimeout;  ///< the same, in seconds
  std::optional<controls::TimeRange> range;
  bool bChange = false;  ///< the statement may change data
};

/// All that is left on the standard input. Fails with an Ending.
platform::Text StandardInput();

class ServerCommands {
 public:
  ServerCommands(nodes::ServersNodePtr root, std::shared_ptr<DataHost> host, Output& output)
      : m_root(std::move(root)), m_host(std::move(host)), m_output(output) {}

  /// The rows that the table's grid would show, or those of the range.
  void Rows(const platform::Text& sPath, const RowWishes& wishes);
  /// The rows of the server's query of that name.
  void Query(const platform::Text& sServer, const platform::Text& sQuery, const RowWishes& wishes);
  /// The statement is asked for when the server is connected: a password may stand before it.
  void Sql(const platform::Text& sServer, const std::function<platform::Text()>& statement,
           const RowWishes& wishes);
  /// The columns of the table.
  void Structure(const platform::Text& sPath, bool bJson);

 private:
  struct FoundTable {
    platform::ConnectionPtr cn;
    nodes::TableNodePtr table;
  };
  struct Asked {
    platform::Text sSql;
    platform::Text sInto;  ///< the table into which rows as SQL are inserted
    platform::Long lLimit;
    platform::Long lTimeout;
  };

  platform::ConnectionPtr Connect(nodes::ServerNode& server);
  FoundTable Find(const platform::Text& sPath);
  void Fetch(const platform::ConnectionPtr& cn, const Asked& asked, const RowWishes& wishes);

  nodes::ServersNodePtr m_root;
  std::shared_ptr<DataHost> m_host;
  Output& m_output;
};

}  // namespace orvane::tools
