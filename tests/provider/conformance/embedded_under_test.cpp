#include "tests/provider/conformance/embedded_under_test.h"

#include "tests/provider/temporary_root.h"

namespace orvane::provider::conformance {
namespace {

class EmbeddedServer final : public TestServer {
 public:
  std::shared_ptr<engines::Engine> Engine() override {
    return PlaceAt(m_root.Path()).engines.front();
  }
  platform::Text DataSource() const override { return "localhost"; }
  platform::Text Path() const override { return m_root.Path().string(); }

 private:
  TemporaryRoot m_root;
};

}  // namespace

EngineUnderTest EmbeddedUnderTest() {
  using enum Difference;
  return {"embedded",
          []() -> std::unique_ptr<TestServer> { return std::make_unique<EmbeddedServer>(); },
          {kTypesBindNothing, kDecimalsAreDoubles, kNoNaN, kNoMinusZero, kTypelessColumns,
           kConflictClauses, kNumbersItsKeys, kIndexesOfKeysOwn},
          "INT DOUBLE BOOLEAN BIGINT GUID BLOB TEXT NUMERIC DATE TIME TIMESTAMP ANY "};
}

}  // namespace orvane::provider::conformance
