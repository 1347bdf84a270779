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

/// Of columns by table and number, as results tell where a column comes from.
using ColumnNames = std::map<std::pair<Oid, int>, platform::Text>;

/// Tables, partitioned and foreign ones too, and views, materialized ones too, in the order of
/// their names; fails as asking does. Of one table the names of its columns are taken down.
std::vector<TableSchema> ReadPostgresSchema(const platform::Text& sSchema,
                                            const SchemaRequest& request, const AskServer& ask,
                                            ColumnNames& names);

}  // namespace orvane::provider::engines
