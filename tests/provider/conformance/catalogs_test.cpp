// Catalogs: how they come and go, and their names.
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class catalogs : public Conformance {};

ORVANE_ON_EVERY_ENGINE(catalogs);

TEST_P(catalogs, keeps_its_own_catalogs_from_being_changed) {
  const auto opened = Open();
  EXPECT_EQ(Failing(*opened, "DELETE FROM Orvane..Historians"),
            "3805: The catalog Orvane cannot be changed (character 13 of the statement); the "
            "historian keeps it itself; use CREATE DATABASE and DROP DATABASE.");
  EXPECT_EQ(Failing(*opened, "DROP TABLE Functions..Functions"),
            "3805: The catalog Functions cannot be changed (character 12 of the statement); it is "
            "there to be read; change a catalog of your own.");
}

TEST_P(catalogs, creates_and_drops_catalogs) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"Plant1\" ");
  const bool bNoPlaces = Differs(Difference::kChoosesItsPlaces);
  const auto create = [&](const char* sName, const Text& sWhere) {
    const Text sStatement = Text("CREATE DATABASE \"") + sName + "\" ";
    if (bNoPlaces) {
      EXPECT_EQ(Failing(*opened, sStatement + sWhere).substr(0, 4), "3808");
      Run(*opened, sStatement);
    } else {
      Run(*opened, sStatement + sWhere);
    }
  };
  create("Plant2", "ON (SIZE=128)");
  create("Plant3", "ON (PATH='" + m_server->Path() + "')");
  EXPECT_EQ(Select(*opened, "SELECT Name, SizeLimit FROM Orvane..Historians ORDER BY Name"),
            bNoPlaces ? "Plant1|\nPlant2|\nPlant3|\n" : "Plant1|\nPlant2|128\nPlant3|\n");
  EXPECT_EQ(Failing(*opened, "CREATE DATABASE \"plant1\" "),
            "457: There is a catalog \"Plant1\" already; choose another name.");
  Run(*opened, "DROP DATABASE \"Plant1\"");
  EXPECT_EQ(Failing(*opened, "DROP DATABASE \"Plant1\""),
            "5: There is no catalog \"Plant1\" to drop; reload the list of catalogs.");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians ORDER BY Name"),
            "Plant2\nPlant3\n");
}

TEST_P(catalogs, takes_in_the_file_of_a_catalog_where_catalogs_are_files) {
  const auto opened = Open();
  const Text sFile = m_server->Path() + "/Far.db";
  const Text sTakeIn = "CREATE DATABASE \"Back\" ON (FILE='" + sFile + "')";
  if (Differs(Difference::kChoosesItsPlaces)) {
    EXPECT_EQ(
        Failing(*opened, sTakeIn),
        "3808: The server keeps no catalog in a file; make a new one and import the rows into "
        "it.");
    return;
  }
  Run(*opened, "CREATE DATABASE \"Far\" ON (PATH='" + m_server->Path() + "')");
  Run(*opened, "INSERT INTO Far..Tags (Tag) VALUES ('T1')");
  EXPECT_NE(Failing(*opened, sTakeIn).find("is that of the catalog \"Far\" already"), Text::npos);
  Run(*opened, "DROP DATABASE \"Far\"");
  Run(*opened, sTakeIn);
  EXPECT_EQ(Select(*opened, "SELECT Tag FROM Back..Tags"), "T1\n");
  EXPECT_EQ(Failing(*opened, "CREATE DATABASE \"Near\" ON (FILE='Near.db')"),
            "5: The path \"Near.db\" is not complete; enter one that begins with \"/\".");
}

TEST_P(catalogs, knows_catalogs_by_their_identity_where_the_option_says_so) {
  const auto opened = OpenPlant("Historians By GUID = True;");
  const Text sIdentity =
      Select(*opened, "SELECT Identity FROM Orvane..Historians WHERE Name = 'Plant1'")
          .substr(0, 38);
  EXPECT_EQ(sIdentity.front(), '{');
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM \"" + sIdentity + "\"..Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM [" + sIdentity + "].Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  opened->PropertyValue("Historians By GUID", false);
  EXPECT_EQ(Failing(*opened, "SELECT count(*) FROM \"" + sIdentity + "\"..Data").substr(0, 41),
            "3805: There is no catalog \"" + sIdentity.substr(0, 14));
  opened->PropertyValue("Historians By GUID", true);
  Run(*opened, "DROP DATABASE \"" + sIdentity + "\"");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orvane..Historians"), "0\n");
}

TEST_P(catalogs, understands_prefixed_names_where_the_option_says_so) {
  const auto opened = OpenPlant("Identifier Prefixes = True;");
  EXPECT_EQ(Select(*opened,
                   "SELECT Orv_Value FROM Orv_Plant1..Orv_Data WHERE Timestamp BETWEEN '*-1h' AND "
                   "'*' ORDER BY Orv_Timestamp"),
            "1.5\n0.5\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orv_Orvane..Orv_Historians"), "1\n");
  // It would get another name than the one that was typed.
  EXPECT_EQ(
      Failing(*opened, "CREATE DATABASE \"Orv_Plant2\" "),
      "5: A catalog cannot be called \"Orv_Plant2\": the prefix Orv_ has a meaning of its own; "
      "choose another name.");
  Run(*opened, "CREATE DATABASE \"Plant2\" ");
  Run(*opened, "DROP DATABASE \"Orv_Plant1\"");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians"), "Plant2\n");
}

TEST_P(catalogs, reads_tables_and_catalogs_without_regard_to_case) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened, "select count(*) from PLANT1..DATA where TIMESTAMP = '*'"), "1\n");
}

TEST_P(catalogs, joins_catalogs) {
  const auto opened = OpenPlant();
  Run(*opened, "CREATE DATABASE \"Plant2\" ");
  Run(*opened, "INSERT INTO Plant2..Tags (Tag, Unit) VALUES ('T1', 'bar')");
  EXPECT_EQ(
      Select(*opened,
             "SELECT d.Value, t.Unit FROM Plant1..Data d JOIN Plant2..Tags t ON t.Tag = d.Tag "
             "WHERE d.Timestamp = '*'"),
      "0.5|bar\n");
}

}  // namespace
}  // namespace orvane::provider::conformance
