// A table of dates and times of day, with conditions over it and what is expected of them.
#pragma once

#include <sqlite3.h>

#include "tests/provider/dialect/forms.h"

namespace orvane::provider::dialect {

// A date for each of 20 days, from the day after tomorrow (of number 0) backwards, each with a time
// of day that counts up, and a row without either. Today is 2024-05-15 in the connection's zone.
class Days : public Forms {
 protected:
  static constexpr const char* kAll = "0-20";

  Days() {
    Run("CREATE TABLE Plant1..Days (Id INTEGER PRIMARY KEY, Day DATE, Clock TIME, Word TEXT, Mark "
        "TEXT)");
    Run("CREATE TABLE Plant1..Kept (Id INTEGER PRIMARY KEY, Day DATE, Clock TIME, Word TEXT, Mark "
        "TEXT)");
    Run("WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT 20) INSERT INTO "
        "Plant1..Kept SELECT i, date('2024-05-17', '-' || i || ' days'), time(i * 3780, "
        "'unixepoch'), CASE i % 4 WHEN 0 THEN 'y' WHEN 1 THEN '2024-05-10' WHEN 2 THEN '*-2d' ELSE "
        "'t' END, NULL FROM n");
    Run("INSERT INTO Plant1..Kept VALUES (20, NULL, NULL, 't', NULL)");
    Restore();
  }
  // As another program does it; gives what SQLite answers.
  int Theirs(const platform::Text& sSql) {
    sqlite3* file = nullptr;
    EXPECT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &file),
              SQLITE_OK);
    const int nCode = sqlite3_exec(file, sSql.c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(file);
    return nCode;
  }
  void Restore() {
    Run("DELETE FROM Plant1..Days");
    Run("INSERT INTO Plant1..Days SELECT * FROM Plant1..Kept");
  }
  platform::Text Ids(const platform::Text& sCondition) {
    return OnOneLine(Run("SELECT Id FROM Plant1..Days AS d WHERE " + sCondition + " ORDER BY Id"));
  }
  void CheckDays(const Form& form) {
    const platform::Text sCondition = form.sCondition;
    const platform::Text sExpected = Expanded(form.sHours);
    try {
      EXPECT_EQ(Ids(sCondition), sExpected) << sCondition;
      Run("UPDATE Plant1..Days AS d SET Mark = 'Hit' WHERE " + sCondition);
      EXPECT_EQ(Ids("Mark = 'Hit'"), sExpected) << "UPDATE " << sCondition;
      Run("DELETE FROM Plant1..Days AS d WHERE " + sCondition);
      EXPECT_EQ(OnOneLine(Run("SELECT Id FROM Plant1..Kept WHERE Id NOT IN (SELECT Id FROM "
                              "Plant1..Days) ORDER BY Id")),
                sExpected)
          << "DELETE " << sCondition;
    } catch (const platform::Failure& failed) {
      ADD_FAILURE() << sCondition << ": " << failed.Description();
    }
    Restore();
  }
  void CheckDaysRefused(const Form& form) {
    for (const platform::Text& sHead :
         {platform::Text("SELECT * FROM Plant1..Days AS d WHERE "),
          platform::Text("UPDATE Plant1..Days AS d SET Mark = 'Hit' WHERE "),
          platform::Text("DELETE FROM Plant1..Days AS d WHERE ")}) {
      EXPECT_EQ(Failing(sHead + form.sCondition).substr(0, std::strlen(form.sHours)), form.sHours)
          << sHead << form.sCondition;
    }
    EXPECT_EQ(Ids("Mark IS NULL"), Expanded(kAll)) << form.sCondition;
  }
};

}  // namespace orvane::provider::dialect
