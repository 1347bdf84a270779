// The grid library in a program without windows.
#include "platform/failure.h"
#include "platform/grids/grids.h"
#include "tests/controls/component.h"
#include "tests/controls/failure_of.h"

namespace orvane::controls {
namespace {

TEST(headless, a_grid_cannot_be_made_and_says_so) {
  const LoadedComponent component;
  for (const char* sProgId : {platform::kTableEditorProgId, platform::kQueryResultsProgId}) {
    EXPECT_EQ(FailureNumberOf([&] { component.Create(sProgId); }), platform::failure::kComponent);
    EXPECT_EQ(SentenceOf([&] { component.Create(sProgId); }),
              "A grid can only be made on the user-interface thread of a program with windows; use "
              "it in the console.");
  }
  EXPECT_EQ(component.CanUnloadNow(), platform::kOk);
}

TEST(headless, a_table_query_can_be_made_and_used) {
  const LoadedComponent component;
  const auto query = std::dynamic_pointer_cast<platform::TableQuery>(
      component.Create(platform::kTableQueryProgId));
  ASSERT_NE(query, nullptr);
  query->Table("Data");
  EXPECT_EQ(query->SqlText(), "SELECT *\nFROM \"Data\"");
}

}  // namespace
}  // namespace orvane::controls
