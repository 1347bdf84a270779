// What becomes of parameters beside their values.
#include <fstream>

#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_parameters : public SessionFixture {};

TEST_F(session_parameters, a_time_is_stored_and_found_as_the_engine_stores_times) {
  const auto opened = OpenPlant();
  const auto exact = FixedNow() + std::chrono::microseconds(123456);
  With(*opened, "UPDATE Plant1..Data SET Timestamp = ? WHERE Timestamp = ?", {exact, FixedNow()});
  EXPECT_EQ(Select(*opened,
                   "SELECT typeof(Timestamp), Timestamp FROM Plant1..Data WHERE "
                   "Timestamp > '*'"),
            "integer|2024-05-15 12:00:00.123456\n");
}

TEST_F(session_parameters, the_log_tells_no_values) {
  const auto opened = OpenPlant();
  const Text sLog = (m_root.Path() / "s.log").string();
  opened->PropertyValue("Log File", sLog);
  opened->PropertyValue("Log Level", platform::Long{3});
  With(*opened, "SELECT Tag FROM Plant1..Data WHERE Tag = ?", {"a secret name"});
  std::ifstream file(sLog);
  const Text sContent{std::istreambuf_iterator<char>(file), {}};
  EXPECT_NE(sContent.find("WHERE Tag = ?"), Text::npos);
  EXPECT_EQ(sContent.find("secret"), Text::npos);
}

}  // namespace
}  // namespace orvane::provider
