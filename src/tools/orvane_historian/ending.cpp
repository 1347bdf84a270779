#include "tools/orvane_historian/ending.h"

#include "platform/told_failure.h"
#include "tools/orvane_historian/generate.h"

namespace orvane::tools {

int EndingTold(std::ostream& errors, const std::function<int()>& work) {
  constexpr int kFailed = 1;
  constexpr int kKeptAway = 2;
  try {
    return work();
  } catch (const NotGenerated& failed) {
    errors << failed.Description() << '\n';
    return kKeptAway;
  } catch (const platform::Failure& failed) {
    errors << failed.Description() << '\n';
  } catch (const std::exception& exception) {
    const auto told =
        platform::ToldFailure(exception, platform::failure::kComponent, "orvane-historian");
    const bool bSentence = told.Number() != platform::failure::kComponent;
    errors << (bSentence ? "" : "orvane-historian broke off: ") << told.Description() << '\n';
  }
  return kFailed;
}

}  // namespace orvane::tools
