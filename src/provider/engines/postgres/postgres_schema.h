// Tables, views and indexes of a schema, read from the server's catalog in one statement and, with
// indexes, one more, however many there are. Used by the session; pure functions but for what they
// ask.
#pragma once

#include <functional>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// Runs a reading statement with its parameters and gives its rows.
using AskServer =
    std::function<platform::RecordsetPtr(const platform::Text&, std::vector<platform::Value>)>;

/// Tables, partitioned and foreign ones too, and views, materialized ones too, in the order of
/// their names; fails as asking does.
std::vector<TableSchema> ReadPostgresSchema(const platform::Text& sSchema,
                                            const SchemaRequest& request, const AskServer& ask);

}  // namespace orvane::provider::engines
