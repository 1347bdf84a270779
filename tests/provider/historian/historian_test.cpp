#include <atomic>
#include <fstream>
#include <thread>

#include "tests/provider/historian/historian_fixture.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

using historian = HistorianFixture;

TEST_F(historian, makes_the_default_server_at_first_use) {
  EXPECT_FALSE(fs::exists(m_root.Historian()));
  const auto opened = Open();
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_TRUE(fs::is_regular_file(m_root.Historian() / "Orvane.db"));
  EXPECT_EQ(Names(*Open()), "Functions Orvane ");
}

TEST_F(historian, is_made_once_when_many_connect_at_once) {
  std::vector<std::thread> threads;
  std::atomic<int> nOpened{0};
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      engines::SqliteEngine engine;
      const Historian opened(m_root.Path(), "localhost", engine, {});
      ++nOpened;
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(nOpened, 8);
  EXPECT_EQ(std::distance(fs::directory_iterator(m_root.Historian().parent_path()),
                          fs::directory_iterator()),
            1);
}

TEST_F(historian, is_not_made_under_another_name) {
  EXPECT_EQ(OpenFailure("Plant7"),
            "3800: There is no historian \"Plant7\" on this machine; make it with "
            "\"orvane-historian init Plant7\" or choose another server.");
  Historian::Make(m_root.Path(), "Plant7");
  EXPECT_EQ(Names(*Open("Plant7")), "Functions Orvane ");
  EXPECT_EQ(FailureOf([&] { Historian::Make(m_root.Path(), "Plant7"); }),
            "457: There is a historian \"Plant7\" on this machine already; choose another name.");
}

TEST_F(historian, says_that_a_folder_is_a_file) {
  fs::create_directories(m_root.Historian().parent_path());
  std::ofstream(m_root.Historian()) << "x";
  EXPECT_EQ(OpenFailure(), "3802: The historian localhost should be a folder, but " +
                               m_root.Historian().string() +
                               " is none; move it away or choose another server.");
}

TEST_F(historian, says_why_a_folder_cannot_be_reached) {
  fs::create_directories(m_root.Historian().parent_path());
  fs::create_directory_symlink("localhost", m_root.Historian());
  EXPECT_EQ(OpenFailure(), "3800: The historian \"localhost\" in the folder " +
                               m_root.Historian().string() +
                               " cannot be reached (Too many levels of symbolic links): bring its "
                               "disk back, or choose another server.");
}

TEST_F(historian, says_that_a_folder_holds_no_historian) {
  fs::create_directories(m_root.Historian("empty"));
  EXPECT_EQ(OpenFailure("empty"),
            "3802: The folder " + m_root.Historian("empty").string() +
                " holds no historian: the file Orvane.db is missing; restore it from a copy or "
                "choose another server.");
}

TEST_F(historian, says_that_rights_are_missing) {
  Open();
  fs::permissions(m_root.Path(), fs::perms::all);
  fs::permissions(m_root.Historian(), fs::perms::none);
  Text sFailure;
  {
    const WithoutRoot withoutRoot;
    sFailure = OpenFailure();
  }
  fs::permissions(m_root.Historian(), fs::perms::owner_all);
  EXPECT_EQ(sFailure, "3801: You have no rights on the folder of the historian localhost, " +
                          m_root.Historian().string() +
                          "; ask its owner for the right to read and write there.");
}

TEST_F(historian, says_that_its_file_is_no_database) {
  Open();
  std::ofstream(m_root.Historian() / "Orvane.db") << Text(8192, 'x');
  EXPECT_EQ(OpenFailure().substr(0, 4), "3802");
  EXPECT_NE(OpenFailure().find("is in a file that is no database"), Text::npos);
}

TEST_F(historian, says_that_its_file_was_emptied_or_lost_its_table) {
  Open();
  const fs::path file = m_root.Historian() / "Orvane.db";
  const Text sLost = "3802: The file " + file.string() +
                     " of the historian localhost has lost its list of catalogs; restore it from "
                     "a copy or choose another server.";
  { const Stranger stranger(file, "DROP TABLE Historians; CREATE TABLE Historians (Name TEXT)"); }
  EXPECT_EQ(OpenFailure(), sLost);
  fs::resize_file(file, 0);
  EXPECT_EQ(OpenFailure(), sLost);
  EXPECT_EQ(fs::file_size(file), 0U);
}

TEST_F(historian, says_that_its_file_is_locked) {
  Open();
  const Stranger stranger(m_root.Historian() / "Orvane.db", "BEGIN EXCLUSIVE");
  ASSERT_EQ(stranger.Result(), SQLITE_OK);
  EXPECT_EQ(OpenFailure().substr(0, 4), "3803");
  EXPECT_NE(OpenFailure().find("is locked by another program"), Text::npos);
}

TEST_F(historian, makes_the_catalog_of_functions_anew_when_it_is_damaged_or_of_another_version) {
  const auto file = Open()->Find("Functions", {})->file;
  const auto functions = [&] {
    const auto record = *Open()->Find("Functions", {});
    const auto session = m_engine.Open(EngineCatalog(record, true), {});
    return session->Run({"SELECT count(*) > 10 FROM Functions", {}, {}}, {})
        .recordset->ValueAt(0, 0);
  };
  for (const std::size_t nSize : {std::size_t{0}, std::size_t{100}, std::size_t{8192}}) {
    std::ofstream(file) << Text(nSize, 'x');
    EXPECT_EQ(platform::ToText(functions()), "1") << nSize;
  }
  fs::rename(file, m_root.Historian() / "Functions.00000000.db");
  EXPECT_EQ(platform::ToText(functions()), "1");
}

}  // namespace
}  // namespace orvane::provider::historian
