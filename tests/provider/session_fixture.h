// A session on a root of its own, for tests that send it statements.
#pragma once

#include <gtest/gtest.h>

#include "tests/provider/session_acts.h"

namespace orvane::provider {

class SessionFixture : public SessionActs, public testing::Test {
 protected:
  using SessionActs::Run;

  std::unique_ptr<ado::Session> Open(const Text& sOptions = {}) {
    return OpenAt(PlaceAt(m_root.Path()), sOptions);
  }
  static std::unique_ptr<ado::Session> OpenAt(SessionPlace place, const Text& sOptions = {}) {
    return HistorianProvider(std::move(place))
        .Open(ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = localhost;" +
                                             sOptions),
              "", {});
  }
  std::unique_ptr<ado::Session> OpenPlant(const Text& sOptions = {}) {
    auto opened = Open(sOptions);
    FillPlant(*opened);
    return opened;
  }

  TemporaryRoot m_root;
};

}  // namespace orvane::provider
