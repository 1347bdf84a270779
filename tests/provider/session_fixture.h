// A session on a root of its own, for tests that send it statements.
#pragma once

#include <gtest/gtest.h>

#include "tests/provider/temporary_root.h"

namespace orvane::provider {

class SessionFixture : public testing::Test {
 protected:
  using Text = platform::Text;
  using Value = platform::Value;

  std::unique_ptr<ado::Session> Open(const Text& sOptions = {}) {
    return OpenAt(PlaceAt(m_root.Path()), sOptions);
  }
  static std::unique_ptr<ado::Session> OpenAt(SessionPlace place, const Text& sOptions = {}) {
    return HistorianProvider(std::move(place))
        .Open(ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = localhost;" +
                                             sOptions),
              "", {});
  }
  static ado::StatementResult Run(ado::Session& opened, const Text& sText,
                                  platform::Long lMaxRecords = 0) {
    return opened.Execute({sText, lMaxRecords, std::chrono::seconds(0)}, {});
  }
  static Text Select(ado::Session& opened, const Text& sText) {
    return Rows(*Run(opened, sText).recordset);
  }
  static Text Failing(ado::Session& opened, const Text& sText) {
    return FailureOf([&] { Run(opened, sText); });
  }
  // A catalog Plant1 with one value each hour of the day before the fixed noon.
  std::unique_ptr<ado::Session> OpenPlant(const Text& sOptions = {}) {
    auto opened = Open(sOptions);
    FillPlant(*opened);
    return opened;
  }
  static void FillPlant(ado::Session& opened) {
    Run(opened, "CREATE DATABASE \"Plant1\" ");
    Text sInsert = "INSERT INTO Plant1..Data (Tag, Timestamp, Value) VALUES ";
    for (int i = 0; i < 24; ++i) {
      const Text sHours = std::to_string(i);
      sInsert += (i == 0 ? "" : ", ") + ("('T1', '*-" + sHours + "h', " + sHours + ".5)");
    }
    Run(opened, sInsert);
  }

  TemporaryRoot m_root;
};

}  // namespace orvane::provider
