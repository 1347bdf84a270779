// What may befall the catalog "P" of a historian while somebody edits its rows, on each engine.
#pragma once

#include <memory>

#include "tests/provider/conformance/engine_under_test.h"

namespace orvane::tests {

class CatalogFaults {
 public:
  using Text = platform::Text;

  /// For the server of a test.
  static std::unique_ptr<CatalogFaults> Of(const provider::conformance::EngineUnderTest& engine,
                                           const provider::conformance::TestServer& server);

  CatalogFaults() = default;
  CatalogFaults(const CatalogFaults&) = delete;
  CatalogFaults& operator=(const CatalogFaults&) = delete;
  virtual ~CatalogFaults() = default;

  /// Another program holds the table "T" as long as what this gives lives.
  virtual std::shared_ptr<void> Lock() = 0;
  virtual Text OfLocked() const = 0;  ///< how what is told of it begins
  virtual void TakeAway() = 0;
  virtual Text OfTakenAway() const = 0;
  /// After TakeAway: another one with an empty table "T" stands in its place.
  virtual void Replace() = 0;
  /// After TakeAway, Replace or not: as it was.
  virtual void BringBack() = 0;
  /// The connections to the server break, and it is there again.
  virtual void Lose() = 0;
  virtual void Find() = 0;
  /// As long as what this gives lives nothing can be stored.
  virtual std::shared_ptr<void> FillDisk() = 0;
  /// Until what was sent by programs that are gone is done or given up.
  virtual void AwaitGone() = 0;
};

/// What a PostgreSQL server calls the database in which the test is.
platform::Text DatabaseOf(const provider::conformance::TestServer& server);

}  // namespace orvane::tests
