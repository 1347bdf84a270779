// What the suite knows of an engine: how a server of it is started, and what it does otherwise than
// the others. One list of engines, one place for their differences.
// Used by the cases of the suite; one thread.
#pragma once

#include <memory>
#include <ostream>
#include <set>
#include <vector>

#include "provider/engines/engine.h"

namespace orvane::provider::conformance {

/// A server for one test, empty but for its own catalogs; gone with it.
class TestServer {
 public:
  TestServer() = default;
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;
  virtual ~TestServer() = default;

  virtual std::shared_ptr<engines::Engine> Engine() = 0;
  virtual platform::Text DataSource() const = 0;
  virtual platform::Text User() const { return {}; }
  virtual platform::Text Password() const { return {}; }
  /// A data source at which whoever comes is let in without a password.
  virtual platform::Text TrustingSource() const { return DataSource(); }
  /// A folder, or whatever stands for one there, in which the server may keep a catalog.
  virtual platform::Text Path() const = 0;
};

/// What one engine does and another does not. A case asks for it where it expects something else.
enum class Difference {
  kTypesBindNothing,    ///< a column takes and gives back values of any type
  kDecimalsAreDoubles,  ///< a decimal has 15 digits in a column of numbers
  kNoNaN,               ///< a value that is no number is refused
  kNoMinusZero,         ///< a column of numbers keeps no sign of zero
  kTypelessColumns,     ///< a column may have no type
  kConflictClauses,     ///< INSERT OR FAIL and its like
  kNumbersItsKeys,      ///< an INTEGER PRIMARY KEY that is left out is counted on
  kIndexesOfKeysOwn,    ///< indexes that a table's rules need have names of the engine's own
  kChoosesItsPlaces,    ///< where a catalog lies, and how large it grows, is for the server alone
  kNoZeroCharacter,     ///< a text holds no character of number 0
  kNoStatementTimes,    ///< a column of texts is no time while a statement runs
};

/// In words, for the report.
struct KnownDifference {
  Difference difference;
  const char* sName;
  const char* sWhat;
};
const std::vector<KnownDifference>& KnownDifferences();

struct EngineUnderTest {
  const char* sName;
  std::unique_ptr<TestServer> (*start)();
  std::set<Difference> differences;
  /// DATA_TYPE and TYPE_NAME of the best match of each type that columns have.
  platform::Text sBestTypes;
};

inline void PrintTo(const EngineUnderTest& engine, std::ostream* to) {
  *to << engine.sName;
}

/// All engines that this machine has.
const std::vector<EngineUnderTest>& Engines();

}  // namespace orvane::provider::conformance
