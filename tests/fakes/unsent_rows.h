// What the host is told of rows that are not stored, for tests of whoever lets go of what they lie
// in. One thread.
#pragma once

#include <vector>

#include "platform/unsent_rows.h"

namespace orvane::fakes {

class FakeUnsentRows final : public platform::UnsentRows {
 public:
  void Tell(const platform::RowsPlace&, platform::RowIndex) override {}
  platform::Long Round(const platform::RowsPlace&) const override { return 0; }
  platform::Boolean MayLose(const platform::RowsPlace& place) override {
    asked.push_back(place);
    return bMayLose;
  }
  void Lose(const platform::RowsPlace& place) override { lost.push_back(place); }

  bool bMayLose = true;
  std::vector<platform::RowsPlace> asked;
  std::vector<platform::RowsPlace> lost;
};

}  // namespace orvane::fakes
