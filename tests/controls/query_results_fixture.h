// A query's grid as the snap-in binds it.
#pragma once

#include "controls/grid/query_results.h"
#include "tests/controls/grid_fixture.h"

namespace orvane::controls {

class QueryResultsFixture : public GridFixture {
 protected:
  QueryResultsFixture() { m_server.answer = Plant(50); }
  /// A grid as the snap-in binds it.
  std::unique_ptr<controls::QueryResults> Bound() {
    auto results = std::make_unique<controls::QueryResults>(Services());
    results->Connection(m_connection);
    results->QueryName("Hot pumps");
    results->SqlText("SELECT * FROM Pumps");
    results->MaxRows(7);
    results->QueryTimeout(8);
    return results;
  }
};

}  // namespace orvane::controls
