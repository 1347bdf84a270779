// Catalogs whose files are let go of and taken in again.
#include <fstream>

#include "tests/provider/historian/historian_fixture.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

class attached_catalogs : public HistorianFixture {
 protected:
  attached_catalogs() { fs::create_directory(m_elsewhere); }
  Text Attach(const Text& sName, const fs::path& file) {
    return FailureOf([&] { m_opened->AttachCatalog(sName, file, {}); });
  }

  fs::path m_elsewhere = m_root.Path() / "elsewhere";
  std::unique_ptr<Historian> m_opened = Open();
};

TEST_F(attached_catalogs, one_at_a_path_of_its_own_comes_back_after_its_removal) {
  const auto before = m_opened->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
  EXPECT_EQ(Rows(before), "1");
  m_opened->DropCatalog("Plant1", {});
  const auto after = m_opened->AttachCatalog("Plant2", before.file, {});
  EXPECT_EQ(Names(*m_opened), "Functions Orvane Plant2 ");
  EXPECT_EQ(after.file, before.file);
  EXPECT_NE(after.sIdentity, before.sIdentity);
  EXPECT_EQ(Rows(*m_opened->Find("Plant2", {})), "1");
}

TEST_F(attached_catalogs, a_detached_one_leaves_its_file_also_in_the_historians_folder) {
  const auto record = m_opened->CreateCatalog("Plant1", "", 0, {});
  EXPECT_EQ(Rows(record), "1");
  EXPECT_EQ(m_opened->DetachCatalog("PLANT1", {}).file, record.file);
  EXPECT_EQ(Names(*m_opened), "Functions Orvane ");
  EXPECT_EQ(FailureOf([&] { m_opened->CreateCatalog("Plant1", "", 0, {}); }),
            "457: There is a file " + record.file.string() +
                " already, perhaps of a catalog that was removed; take it in again with "
                "\"orvane-historian attach Plant1 " +
                record.file.string() + "\", or choose another name or folder.");
  // What lies in the folder moves along with it.
  m_opened->AttachCatalog("Plant1", record.file, {});
  m_opened.reset();
  fs::rename(m_root.Historian(), m_root.Historian("Plant 7"));
  m_opened = Open("Plant 7");
  EXPECT_EQ(Rows(*m_opened->Find("Plant1", {})), "1");
  m_opened->DropCatalog("Plant1", {});
  EXPECT_TRUE(fs::is_empty(m_root.Historian("Plant 7") / "catalogs"));
}

TEST_F(attached_catalogs, the_sentence_says_what_to_type_for_any_server_name_and_folder) {
  Historian::Make(m_root.Path(), "Plant 7");
  m_opened = Open("Plant 7");
  const fs::path folder = m_root.Path() / "else where";
  fs::create_directory(folder);
  m_opened->CreateCatalog("A b", folder.string(), 0, {});
  m_opened->DropCatalog("A b", {});
  EXPECT_NE(FailureOf([&] { m_opened->CreateCatalog("A b", folder.string(), 0, {}); })
                .find("\"orvane-historian attach --server 'Plant 7' 'A b' '" +
                      (folder / "A b.db").string() + "'\""),
            Text::npos);
}

TEST_F(attached_catalogs, a_file_that_is_no_catalog_is_refused) {
  const fs::path file = m_elsewhere / "x.db";
  EXPECT_EQ(Attach("Plant1", file),
            "3800: The catalog \"Plant1\" cannot be opened: there is no "
            "file \"" +
                file.string() + "\"; restore it from a copy.");
  EXPECT_EQ(Attach("Plant1", m_elsewhere).substr(0, 5), "3802:");
  for (const auto& sContent : {Text(), Text(8192, 'x')}) {
    std::ofstream(file) << sContent;
    EXPECT_EQ(Attach("Plant1", file), "5: The file " + file.string() +
                                          " is no sound catalog; name another file, or restore "
                                          "it from a copy.");
  }
  EXPECT_EQ(Names(*m_opened), "Functions Orvane ");
}

TEST_F(attached_catalogs, one_that_holds_texts_in_place_of_times_is_refused) {
  const auto record = m_opened->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
  m_opened->DropCatalog("Plant1", {});
  {
    const Stranger stranger(record.file,
                            "CREATE TABLE \"Log of\" (id, \"At \"\"all\" TIMESTAMP);"
                            "CREATE VIEW Texts AS SELECT '2024-05-31' AS At;"
                            "INSERT INTO \"Log of\" VALUES (1, 1715774400000000), (2, NULL)");
  }
  EXPECT_EQ(Attach("Plant1", record.file), "no failure");
  m_opened->DetachCatalog("Plant1", {});
  { const Stranger stranger(record.file, "INSERT INTO \"Log of\" VALUES (3, '2024-05-31')"); }
  EXPECT_EQ(
      Attach("Plant1", record.file),
      "5: The file " + record.file.string() +
          " holds texts where times are stored, in the column \"At \"all\" of the table \"Log "
          "of\"; write them as microseconds since 1970 in UTC with the program that made it, "
          "or declare the column as TEXT.");
  EXPECT_EQ(Names(*m_opened), "Functions Orvane ");
}

TEST_F(attached_catalogs, one_that_holds_numbers_in_place_of_dates_is_refused) {
  const auto record = m_opened->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
  m_opened->DropCatalog("Plant1", {});
  {
    const Stranger stranger(record.file,
                            "CREATE TABLE Log (id, Day DATE, At TIME);"
                            "INSERT INTO Log VALUES (1, '2024-05-31', '08:30'), (2, NULL, 'soon')");
  }
  EXPECT_EQ(Attach("Plant1", record.file), "no failure");
  m_opened->DetachCatalog("Plant1", {});
  { const Stranger stranger(record.file, "INSERT INTO Log VALUES (3, NULL, 830)"); }
  EXPECT_EQ(Attach("Plant1", record.file),
            "5: The file " + record.file.string() +
                " holds numbers or bytes where times of day are stored, in the column \"At\" of "
                "the table \"Log\"; write them as texts such as '08:30:00' with the program that "
                "made it, or declare the column as INTEGER.");
  { const Stranger stranger(record.file, "UPDATE Log SET Day = '20240531'"); }
  EXPECT_EQ(Attach("Plant1", record.file),
            "5: The file " + record.file.string() +
                " holds numbers or bytes where dates are stored, in the column \"Day\" of the "
                "table \"Log\"; write them as texts such as '2024-05-31' with the program that "
                "made it, or declare the column as INTEGER.");
  EXPECT_EQ(Names(*m_opened), "Functions Orvane ");
}

TEST_F(attached_catalogs, a_file_is_one_catalogs_only) {
  const auto record = m_opened->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
  const auto there = [](const fs::path& file, const Text& sCatalog) {
    return "457: The file " + file.string() + " is that of the catalog \"" + sCatalog +
           "\" already; name another file.";
  };
  EXPECT_EQ(Attach("Plant2", record.file), there(record.file, "Plant1"));
  const fs::path link = m_elsewhere / "link.db";
  fs::create_hard_link(record.file, link);
  EXPECT_EQ(Attach("Plant2", link), there(link, "Plant1"));
  const fs::path system = m_root.Historian() / "Orvane.db";
  EXPECT_EQ(Attach("Plant2", system), there(system, "Orvane"));
}

TEST_F(attached_catalogs, names_are_checked_as_for_a_new_one) {
  const auto record = m_opened->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
  m_opened->CreateCatalog("Plant2", "", 0, {});
  m_opened->DetachCatalog("Plant1", {});
  EXPECT_EQ(Attach("a.b", record.file),
            "5: A catalog cannot be called \"a.b\": it holds a dot; choose another name.");
  EXPECT_EQ(Attach("plant2", record.file),
            "457: There is a catalog \"Plant2\" already; choose another name.");
}

TEST_F(attached_catalogs, neither_its_own_nor_one_at_work_is_detached) {
  const auto record = m_opened->CreateCatalog("Plant1", "", 0, {});
  const auto detach = [&](const Text& sName) {
    return FailureOf([&] { m_opened->DetachCatalog(sName, {}); });
  };
  EXPECT_EQ(detach("Orvane"),
            "5: The catalog Orvane belongs to the historian itself and cannot be detached; choose "
            "another one.");
  EXPECT_EQ(detach("Plant2"),
            "5: There is no catalog \"Plant2\" to detach; name one that the historian has.");
  const Stranger stranger(record.file, "BEGIN; SELECT * FROM Tags");
  EXPECT_EQ(detach("Plant1").substr(0, 5), "3803:");
  EXPECT_EQ(Names(*m_opened), "Functions Orvane Plant1 ");
}

}  // namespace
}  // namespace orvane::provider::historian
