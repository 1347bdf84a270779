// What historian SQL looks like to a PostgreSQL server.
// Told by the engine on PostgreSQL. Constants and pure functions, any thread.
#pragma once

#include "provider/engines/sql_form.h"

namespace orvane::provider::engines {

extern const SqlForm kPostgresForm;

}  // namespace orvane::provider::engines
