// A historian in a folder of its own with a catalog "Plant1": one value an hour for the 24 hours up
// to the fixed noon, each of the value of how many hours ago it was. Its zone is two hours ahead
// of UTC, so that a time read in the wrong zone is seen.
#pragma once

#include <gtest/gtest.h>

#include "platform/conversions.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::dialect {

class Plant : public testing::Test {
 protected:
  Plant() {
    m_session = HistorianProvider(PlaceAt(m_root.Path()))
                    .Open(ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = "
                                                         "localhost; Time Zone = Europe/Madrid;"),
                          "", {});
    Run("CREATE DATABASE \"Plant1\" ");
    Run("CREATE TABLE Plant1..Copy (Tag TEXT, Timestamp TIMESTAMP, Value REAL, Status TEXT, "
        "PRIMARY KEY (Tag, Timestamp))");
    platform::Text sRows;
    for (int i = 0; i < 24; ++i) {
      const platform::Text sHour = std::to_string(i);
      sRows += (i == 0 ? "" : ", ") + ("('T1', '*-" + sHour + "h', " + sHour + ", 'Good')");
    }
    Run("INSERT INTO Plant1..Data VALUES " + sRows);
    Run("INSERT INTO Plant1..Copy SELECT * FROM Plant1..Data");
    Run("INSERT INTO Plant1..Tags (Tag, Description) VALUES ('T1', '2024-05-15 10:00'), ('T2', "
        "'none')");
  }

  platform::Text Run(const platform::Text& sStatement) {
    return Rows(*m_session->Execute({sStatement, 0, std::chrono::seconds(0)}, {}).recordset);
  }
  /// What the statement fails with, without its number; "no failure" when it does not.
  platform::Text Failing(const platform::Text& sStatement) {
    const platform::Text sFailure = FailureOf([&] { Run(sStatement); });
    const auto colon = sFailure.find(": ");
    return colon == platform::Text::npos ? sFailure : sFailure.substr(colon + 2);
  }
  /// The same without the place.
  platform::Text Refusal(const platform::Text& sStatement) {
    const platform::Text sFailure = Failing(sStatement);
    return sFailure.substr(0, sFailure.find(" (character"));
  }
  platform::Text Count(const platform::Text& sFrom) {
    return OnOneLine(Run("SELECT count(*) FROM " + sFrom));
  }
  /// The hours for which the condition holds, on one line.
  platform::Text Hours(const platform::Text& sCondition) {
    return OnOneLine(Run("SELECT CAST(Value AS INTEGER) FROM Plant1..Data AS d WHERE " +
                         sCondition + " ORDER BY Value"));
  }
  static platform::Text OnOneLine(platform::Text sRows) {
    for (char& c : sRows) {
      if (c == '\n') c = ' ';
    }
    return sRows;
  }

  TemporaryRoot m_root;
  std::unique_ptr<ado::Session> m_session;
};

}  // namespace orvane::provider::dialect
