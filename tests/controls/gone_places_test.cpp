#include "controls/view/gone_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace orvane::controls {
namespace {

TEST(gone_places, are_left_out_as_from_a_plain_list_of_all) {
  constexpr GonePlaces::Place kPlaces = 400;
  std::mt19937 random(20261122);
  std::vector<GonePlaces::Place> seen(kPlaces);
  std::iota(seen.begin(), seen.end(), 0);
  GonePlaces gone;
  EXPECT_TRUE(gone.Empty());
  while (!seen.empty()) {
    const std::size_t nFirst = random() % seen.size();
    std::size_t nEnd = nFirst + 1;
    while (nEnd < seen.size() && seen[nEnd] == seen[nEnd - 1] + 1 && random() % 4 != 0) ++nEnd;
    const auto begin = seen.begin() + static_cast<std::ptrdiff_t>(nFirst);
    const auto end = seen.begin() + static_cast<std::ptrdiff_t>(nEnd);
    gone.Add(std::vector<GonePlaces::Place>(begin, end));
    seen.erase(begin, end);
    ASSERT_EQ(gone.Count(), kPlaces - std::ssize(seen));
    for (std::size_t n = 0; n < seen.size(); ++n) {
      ASSERT_EQ(gone.Whole(static_cast<GonePlaces::Place>(n)), seen[n]);
    }
    for (GonePlaces::Place place = 0; place < kPlaces; ++place) {
      const auto at = std::ranges::lower_bound(seen, place);
      const bool bSeen = at != seen.end() && *at == place;
      ASSERT_EQ(gone.Contains(place), !bSeen);
      ASSERT_EQ(gone.Seen(place),
                bSeen ? std::optional<GonePlaces::Place>(at - seen.begin()) : std::nullopt);
    }
  }
}

}  // namespace
}  // namespace orvane::controls
