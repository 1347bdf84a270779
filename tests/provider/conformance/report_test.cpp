// What the engines do otherwise, told and counted; and that a case asks for each of it.
#include <fstream>
#include <iostream>
#include <sstream>

#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class report : public testing::TestWithParam<EngineUnderTest> {};

ORVANE_ON_EVERY_ENGINE(report);

TEST_P(report, tells_what_the_engine_does_otherwise) {
  const auto& declared = GetParam().differences;
  RecordProperty("differences", static_cast<int>(declared.size()));
  std::cout << GetParam().sName << ": " << declared.size() << " differences\n";
  std::size_t nTold = 0;
  for (const auto& known : KnownDifferences()) {
    if (!declared.contains(known.difference)) continue;
    ++nTold;
    std::cout << "  " << known.sWhat << '\n';
  }
  EXPECT_EQ(nTold, declared.size()) << "one is not told in words";
}

TEST(differences, are_declared_by_an_engine_and_asked_for_by_a_case) {
  std::ostringstream cases;
  for (const auto& entry : std::filesystem::directory_iterator(ORVANE_CONFORMANCE)) {
    const auto sName = entry.path().filename().string();
    if (sName.ends_with("_test.cpp")) cases << std::ifstream(entry.path()).rdbuf();
  }
  for (const auto& known : KnownDifferences()) {
    const bool bDeclared = std::ranges::any_of(Engines(), [&](const auto& engine) {
      return engine.differences.contains(known.difference);
    });
    EXPECT_TRUE(bDeclared) << known.sName;
    EXPECT_NE(cases.str().find("Differs(Difference::" + platform::Text(known.sName) + ")"),
              platform::Text::npos)
        << known.sName;
  }
}

}  // namespace
}  // namespace orvane::provider::conformance
