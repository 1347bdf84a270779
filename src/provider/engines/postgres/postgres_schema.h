// Tables, views and indexes of a schema, read from the server's catalog in one statement and, with
// indexes, one more, however many there are. Used by the session; pure functions but for what they
// ask.
#pragma once

#include <libpq-fe.h>

#include <functional>
#include <map>
#include <utility>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// Runs a reading statement with its parameters and gives its rows.
using AskServer =
    std::function<platform::RecordsetPtr(const platform::Text&, std::vector<platform::Value>)>;

/// What a table tells of a column that results read from it.
struct TableColumn {
  platform::Text sName;
  bool bBytes = false;  ///< its texts are put in order by their bytes
};
/// By table and number, as results tell where a column comes from.
using TableColumns = std::map<std::pair<Oid, int>, TableColumn>;

/// Tables, partitioned and foreign ones too, and views, materialized ones too, in the order of
/// their names; fails as asking does. Of one table the columns are taken down.
std::vector<TableSchema> ReadPostgresSchema(const platform::Text& sSchema,
                                            const SchemaRequest& request, const AskServer& ask,
                                            TableColumns& columns);

}  // namespace orvane::provider::engines
