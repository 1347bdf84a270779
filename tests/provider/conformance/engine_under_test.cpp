#include "tests/provider/conformance/engine_under_test.h"

#include "tests/provider/conformance/embedded_under_test.h"
#include "tests/provider/conformance/postgres_under_test.h"

namespace orvane::provider::conformance {

const std::vector<KnownDifference>& KnownDifferences() {
  using enum Difference;
  static const std::vector<KnownDifference> all = {
      {kTypesBindNothing, "kTypesBindNothing", "columns take and give back values of any type"},
      {kDecimalsAreDoubles, "kDecimalsAreDoubles", "decimals have 15 digits in columns of numbers"},
      {kNoNaN, "kNoNaN", "values that are no number are refused"},
      {kNoMinusZero, "kNoMinusZero", "columns of numbers keep no sign of zero"},
      {kTypelessColumns, "kTypelessColumns", "columns may have no type"},
      {kConflictClauses, "kConflictClauses", "INSERT OR FAIL and its like are understood"},
      {kNumbersItsKeys, "kNumbersItsKeys", "an INTEGER PRIMARY KEY that is left out is counted on"},
      {kIndexesOfKeysOwn, "kIndexesOfKeysOwn", "indexes of a table's rules have names of its own"},
      {kChoosesItsPlaces, "kChoosesItsPlaces", "a catalog has no path and no limit of its size"},
      {kNoZeroCharacter, "kNoZeroCharacter", "texts hold no character of number 0"},
      {kNoStatementTimes, "kNoStatementTimes", "texts are no times while a statement runs"},
  };
  return all;
}

const std::vector<EngineUnderTest>& Engines() {
  static const std::vector<EngineUnderTest> all = {EmbeddedUnderTest(), PostgresUnderTest()};
  return all;
}

}  // namespace orvane::provider::conformance
