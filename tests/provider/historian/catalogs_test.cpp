#include <algorithm>
#include <fstream>

#include "provider/historian/catalog_file.h"
#include "tests/provider/engines/refusing_disk.h"
#include "tests/provider/historian/historian_fixture.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

using catalogs = HistorianFixture;

TEST_F(catalogs, creates_catalogs_with_their_first_tables) {
  const auto opened = Open();
  const auto record = opened->CreateCatalog("Plant1", "", 0, {});
  EXPECT_EQ(record.file, m_root.Historian() / "catalogs" / "Plant1.db");
  EXPECT_EQ(record.sIdentity.size(), 38U);
  EXPECT_EQ(opened->Find("plant1", {})->sIdentity, record.sIdentity);
  const auto catalog = EngineCatalog(record, true);
  Text sTables;
  for (const auto& table : m_engine.Open(catalog, {})->Schema(catalog, {}, {})) {
    sTables += table.sName + ":";
    for (const auto& column : table.columns) {
      sTables += " " + column.sName;
      if (column.lKeyOrdinal != 0) sTables += std::to_string(column.lKeyOrdinal);
    }
    sTables += "\n";
  }
  EXPECT_EQ(sTables,
            "Data: Tag1 Timestamp2 Value Status\n"
            "Data2: Tag1 Timestamp2 Value Status\n"
            "Tags: Tag1 Description Unit Type\n");
}

TEST_F(catalogs, lists_catalogs_in_the_order_of_their_folded_names) {
  const auto opened = Open();
  for (const char* const sName : {"beta", "Alpha", "gamma", "\xC3\xA9t\xC3\xA9", "P 1-x"}) {
    opened->CreateCatalog(sName, "", 0, {});
  }
  EXPECT_EQ(Names(*opened), "Alpha beta Functions gamma Orvane P 1-x \xC3\xA9t\xC3\xA9 ");
}

TEST_F(catalogs, refuses_names_that_no_catalog_can_have) {
  const auto opened = Open();
  opened->CreateCatalog("Plant1", "", 0, {});
  opened->CreateCatalog("\xC3\x89T", "", 0, {});
  const auto failure = [&](const Text& sName) {
    return FailureOf([&] { opened->CreateCatalog(sName, "", 0, {}); });
  };
  EXPECT_EQ(failure("PLANT1"), "457: There is a catalog \"Plant1\" already; choose another name.");
  EXPECT_EQ(failure("\xC3\xA9t"),
            "457: There is a catalog \"\xC3\x89T\" already; choose another name.");
  EXPECT_EQ(failure(""), "5: A catalog needs a name; enter one.");
  for (const char* const sName : {"orvane", "Functions", "MAIN", "temp"}) {
    EXPECT_EQ(failure(sName), "5: A catalog cannot be called \"" + Text(sName) +
                                  "\": the historian uses this name itself; choose another name.");
  }
  for (const char* const sName : {"a/b", "a\\b", "a\"b", "a'b", "a;b", "a\nb", "[a]"}) {
    EXPECT_EQ(failure(sName), "5: A catalog cannot be called \"" + Text(sName) +
                                  "\": it holds a quote, a bracket, a slash, a semicolon or a "
                                  "control character; choose another name.");
  }
  for (const char* const sName : {" a", "a "}) {
    EXPECT_EQ(failure(sName), "5: A catalog cannot be called \"" + Text(sName) +
                                  "\": it begins or ends with a blank; choose another name.");
  }
  // A key of the tree could be that of two catalogs.
  for (const char* const sName : {".a", "a.b", "a."}) {
    EXPECT_EQ(failure(sName), "5: A catalog cannot be called \"" + Text(sName) +
                                  "\": it holds a dot; choose another name.");
  }
  EXPECT_EQ(failure("orv_x"),
            "5: A catalog cannot be called \"orv_x\": the prefix Orv_ has a meaning of its own; "
            "choose another name.");
  EXPECT_EQ(failure("{x}"),
            "5: A catalog cannot be called \"{x}\": names in braces are identities; choose another "
            "name.");
  EXPECT_NE(failure(Text(129, 'a')).find("longer than 128 bytes"), Text::npos);
  EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 \xC3\x89T ");
}

TEST_F(catalogs, puts_a_catalog_into_the_folder_that_is_asked_for) {
  const auto opened = Open();
  const fs::path folder = m_root.Path() / "elsewhere";
  const auto failure = [&](const Text& sPath) {
    return FailureOf([&] { opened->CreateCatalog("Plant1", sPath, 0, {}); });
  };
  EXPECT_EQ(failure(folder),
            "5: There is no folder " + folder.string() + "; make it first or choose another one.");
  EXPECT_EQ(failure("here"),
            "5: The path \"here\" is not complete; enter one that begins with \"/\".");
  fs::create_directory(folder);
  EXPECT_EQ(failure(folder), "no failure");
  EXPECT_TRUE(fs::is_regular_file(folder / "Plant1.db"));
  // Nothing outside of the historian's folder goes away.
  opened->DropCatalog("Plant1", {});
  EXPECT_TRUE(fs::is_regular_file(folder / "Plant1.db"));
  EXPECT_EQ(failure(folder), "457: There is a file " + (folder / "Plant1.db").string() +
                                 " already, perhaps of a catalog that was removed; take it in "
                                 "again with \"orvane-historian attach Plant1 " +
                                 (folder / "Plant1.db").string() +
                                 "\", or choose another name or folder.");
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
}

TEST_F(catalogs, says_that_a_path_is_not_for_everyone) {
  fs::permissions(m_root.Path(), fs::perms::all);
  const fs::path folder = m_root.Path() / "closed";
  fs::create_directory(folder);
  // Root owns the folder; anyone else may only look into his own.
  fs::permissions(folder, geteuid() == 0 ? fs::perms::owner_all : fs::perms::owner_read);
  Text sFailure;
  {
    const WithoutRoot withoutRoot;
    sFailure = FailureOf([&] { Open()->CreateCatalog("Plant1", folder.string(), 0, {}); });
  }
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_EQ(sFailure, "3801: You have no right to write into the folder " + folder.string() +
                          "; ask its owner for the right or choose another folder.");
}

TEST_F(catalogs, refuses_a_size_that_has_no_room_for_the_tables) {
  EXPECT_EQ(FailureOf([&] { Open()->CreateCatalog("Plant1", "", 63, {}); }),
            "5: A catalog of 63 kilobytes has no room for its tables; enter a size of at least "
            "64.");
  EXPECT_EQ(Open()->CreateCatalog("Plant1", "", 64, {}).llKilobytes, 64);
}

TEST_F(catalogs, drops_a_catalog_and_its_file) {
  const auto opened = Open();
  const auto record = opened->CreateCatalog("Plant1", "", 0, {});
  opened->DropCatalog("PLANT1", {});
  EXPECT_FALSE(fs::exists(record.file));
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_EQ(opened->CreateCatalog("Plant1", "", 0, {}).sName, "Plant1");
}

TEST_F(catalogs, drops_a_catalog_whose_file_is_gone_or_damaged) {
  const auto opened = Open();
  fs::remove(opened->CreateCatalog("Plant1", "", 0, {}).file);
  opened->DropCatalog("Plant1", {});
  std::ofstream(opened->CreateCatalog("Plant2", "", 0, {}).file) << Text(8192, 'x');
  opened->DropCatalog("Plant2", {});
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(catalogs, keeps_a_catalog_that_another_program_uses) {
  const auto opened = Open();
  const auto record = opened->CreateCatalog("Plant1", "", 0, {});
  {
    const Stranger stranger(record.file, "BEGIN; SELECT * FROM Tags");
    EXPECT_EQ(FailureOf([&] { opened->DropCatalog("Plant1", {}); }),
              "3803: The catalog Plant1 is in use by another program; close what reads or writes "
              "it and try again.");
    EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 ");
  }
  opened->DropCatalog("Plant1", {});
  EXPECT_FALSE(fs::exists(record.file));
}

TEST_F(catalogs, keeps_a_catalog_elsewhere_that_another_program_uses) {
  const auto opened = Open();
  const fs::path folder = m_root.Path() / "elsewhere";
  fs::create_directory(folder);
  const auto record = opened->CreateCatalog("Plant1", folder.string(), 0, {});
  {
    const Stranger stranger(record.file, "BEGIN; SELECT * FROM Tags");
    EXPECT_EQ(FailureOf([&] { opened->DropCatalog("Plant1", {}); }),
              "3803: The catalog Plant1 is in use by another program; close what reads or writes "
              "it and try again.");
    EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 ");
  }
  opened->DropCatalog("Plant1", {});
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  // It is left with what it holds, free for others.
  const Stranger stranger(record.file, "BEGIN IMMEDIATE; INSERT INTO Tags (Tag) VALUES ('T')");
  EXPECT_EQ(stranger.Result(), SQLITE_OK);
}

TEST_F(catalogs, drops_a_catalog_elsewhere_whose_file_is_gone_or_damaged_or_not_to_be_written) {
  const auto opened = Open();
  const fs::path folder = m_root.Path() / "elsewhere";
  fs::create_directory(folder);
  const auto create = [&](const Text& sName) {
    return opened->CreateCatalog(sName, folder.string(), 0, {}).file;
  };
  fs::remove(create("Gone"));
  opened->DropCatalog("Gone", {});
  std::ofstream(create("Damaged")) << Text(8192, 'x');
  opened->DropCatalog("Damaged", {});
  const fs::path foreign = create("Foreign");
  fs::permissions(m_root.Path(), fs::perms::all);
  for (const auto& entry : fs::recursive_directory_iterator(m_root.Historian())) {
    fs::permissions(entry.path(), fs::perms::all);
  }
  fs::permissions(m_root.Historian(), fs::perms::all);
  fs::permissions(m_root.Historian().parent_path(), fs::perms::all);
  const auto readable = fs::perms::owner_read | fs::perms::others_read;
  fs::permissions(foreign, readable);
  fs::permissions(folder, readable | fs::perms::owner_exec | fs::perms::others_exec);
  Text sFailure;
  {
    const WithoutRoot withoutRoot;
    sFailure = FailureOf([&] { opened->DropCatalog("Foreign", {}); });
  }
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_EQ(sFailure, "no failure");
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_TRUE(fs::exists(folder / "Damaged.db"));
  EXPECT_TRUE(fs::exists(foreign));
}

TEST_F(catalogs, leaves_the_file_of_a_folder_that_is_linked_in) {
  const auto opened = Open();
  const fs::path elsewhere = m_root.Path() / "elsewhere";
  fs::create_directory(elsewhere);
  const fs::path link = m_root.Historian() / "catalogs" / "sub";
  fs::create_directory_symlink(elsewhere, link);
  const auto record = opened->CreateCatalog("Plant1", link.string(), 0, {});
  EXPECT_EQ(Rows(record), "1");
  const auto before = Content(m_root.Path());
  opened->DropCatalog("Plant1", {});
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_EQ(Rows(record), "1");
  EXPECT_EQ(Content(m_root.Path()), before);
}

TEST_F(catalogs, drops_the_file_inside_its_folder_however_that_is_reached) {
  fs::create_directories(m_root.Path() / "far" / "away");
  fs::create_directory(m_root.Path() / "here");
  fs::create_directory_symlink("far/away", m_root.Path() / "link");
  // Beyond a link, ".." is the folder above the one that it leads to.
  for (const char* const sRoot : {"here/..", "here/../here/.", "link/.."}) {
    const fs::path root = m_root.Path() / sRoot;
    Historian opened(root, "localhost", m_engine, {});
    const fs::path file = opened.CreateCatalog("Plant1", "", 0, {}).file;
    EXPECT_TRUE(fs::exists(file)) << sRoot;
    opened.DropCatalog("Plant1", {});
    EXPECT_FALSE(fs::exists(file)) << sRoot;
  }
  EXPECT_TRUE(fs::exists(m_root.Path() / "far" / "historians" / "localhost" / "Orvane.db"));
  // Entered by the user, a path has no ".." any more.
  Historian opened(m_root.Path() / "here" / "..", "localhost", m_engine, {});
  const Text sFolder = (m_root.Historian() / "catalogs").string();
  const fs::path file = opened.CreateCatalog("Plant1", sFolder, 0, {}).file;
  opened.DropCatalog("Plant1", {});
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(catalogs, drops_neither_its_own_catalogs_nor_one_that_is_not_there) {
  const auto opened = Open();
  const auto failure = [&](const Text& sName) {
    return FailureOf([&] { opened->DropCatalog(sName, {}); });
  };
  EXPECT_EQ(failure("Plant1"),
            "5: There is no catalog \"Plant1\" to drop; reload the list of catalogs.");
  EXPECT_EQ(failure("orvane"),
            "5: The catalog Orvane belongs to the historian itself and cannot be dropped; choose "
            "another one.");
  EXPECT_EQ(failure("Functions"),
            "5: The catalog Functions belongs to the historian itself and cannot be dropped; "
            "choose another one.");
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
}

TEST_F(catalogs, a_full_disk_is_called_full_and_leaves_nothing) {
  const auto opened = Open();
  const auto file = m_root.Path() / "Plant1.db";
  for (const int nError : {ENOSPC, EDQUOT, EFBIG}) {
    const tests::RefusingDisk disk(nError);
    EXPECT_EQ(FailureOf([&] { MakeCatalogFile(file, "CREATE TABLE t(a)"); }),
              "3807: The disk of the file " + file.string() +
                  " has no room left, so nothing was written: make room and try again.");
  }
  const std::set<Text> content = Content(m_root.Path());
  EXPECT_EQ(std::count_if(content.begin(), content.end(),
                          [](const Text& sName) { return sName.find("Plant1") != Text::npos; }),
            0);
}

}  // namespace
}  // namespace orvane::provider::historian
