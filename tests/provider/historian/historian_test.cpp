#include "provider/historian/historian.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <functional>
#include <thread>

#include "provider/historian/data_folder.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

class historian : public testing::Test {
 protected:
  std::unique_ptr<Historian> Open(const Text& sServer = "localhost") {
    return std::make_unique<Historian>(m_root.Path(), sServer, m_engine, std::stop_token());
  }
  Text OpenFailure(const Text& sServer = "localhost") {
    return FailureOf([&] { Open(sServer); });
  }
  static Text Names(Historian& opened) {
    Text sNames;
    for (const auto& record : opened.Catalogs({})) sNames += record.sName + " ";
    return sNames;
  }

  TemporaryRoot m_root;
  engines::SqliteEngine m_engine{std::chrono::milliseconds(50)};
};

// Another program at work in the file.
class Stranger {
 public:
  Stranger(const fs::path& file, const char* sSql) {
    sqlite3_open(file.c_str(), &m_database);
    m_nResult = sqlite3_exec(m_database, sSql, nullptr, nullptr, nullptr);
  }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;
  ~Stranger() { sqlite3_close(m_database); }
  int Result() const { return m_nResult; }

 private:
  sqlite3* m_database = nullptr;
  int m_nResult = 0;
};

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

TEST_F(historian, says_that_its_file_is_locked) {
  Open();
  const Stranger stranger(m_root.Historian() / "Orvane.db",
                          "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; CREATE TABLE x (a)");
  ASSERT_EQ(stranger.Result(), SQLITE_OK);
  EXPECT_EQ(OpenFailure().substr(0, 4), "3803");
  EXPECT_NE(OpenFailure().find("is locked by another program"), Text::npos);
}

TEST_F(historian, creates_catalogs_with_their_first_tables) {
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

TEST_F(historian, lists_catalogs_in_the_order_of_their_folded_names) {
  const auto opened = Open();
  for (const char* const sName : {"beta", "Alpha", "gamma", "\xC3\xA9t\xC3\xA9", "P 1.x"}) {
    opened->CreateCatalog(sName, "", 0, {});
  }
  EXPECT_EQ(Names(*opened), "Alpha beta Functions gamma Orvane P 1.x \xC3\xA9t\xC3\xA9 ");
}

TEST_F(historian, refuses_names_that_no_catalog_can_have) {
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
  for (const char* const sName : {".a", " a", "a "}) {
    EXPECT_EQ(failure(sName), "5: A catalog cannot be called \"" + Text(sName) +
                                  "\": it begins with a dot or a blank or ends with a blank; "
                                  "choose another name.");
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

TEST_F(historian, puts_a_catalog_into_the_folder_that_is_asked_for) {
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
                                 " already, perhaps of a catalog that was dropped; move it "
                                 "away, or choose another name or folder.");
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
}

TEST_F(historian, says_that_a_path_is_not_for_everyone) {
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

TEST_F(historian, refuses_a_size_that_has_no_room_for_the_tables) {
  EXPECT_EQ(FailureOf([&] { Open()->CreateCatalog("Plant1", "", 63, {}); }),
            "5: A catalog of 63 kilobytes has no room for its tables; enter a size of at least "
            "64.");
  EXPECT_EQ(Open()->CreateCatalog("Plant1", "", 64, {}).llKilobytes, 64);
}

TEST_F(historian, drops_a_catalog_and_its_file) {
  const auto opened = Open();
  const auto record = opened->CreateCatalog("Plant1", "", 0, {});
  opened->DropCatalog("PLANT1", {});
  EXPECT_FALSE(fs::exists(record.file));
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_EQ(opened->CreateCatalog("Plant1", "", 0, {}).sName, "Plant1");
}

TEST_F(historian, drops_a_catalog_whose_file_is_gone_or_damaged) {
  const auto opened = Open();
  fs::remove(opened->CreateCatalog("Plant1", "", 0, {}).file);
  opened->DropCatalog("Plant1", {});
  std::ofstream(opened->CreateCatalog("Plant2", "", 0, {}).file) << Text(8192, 'x');
  opened->DropCatalog("Plant2", {});
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(historian, keeps_a_catalog_that_another_program_uses) {
  const auto opened = Open();
  const auto record = opened->CreateCatalog("Plant1", "", 0, {});
  {
    const Stranger stranger(record.file, "SELECT * FROM Tags");
    EXPECT_EQ(FailureOf([&] { opened->DropCatalog("Plant1", {}); }),
              "3803: The catalog Plant1 is in use by another program; close what reads or writes "
              "it and try again.");
    EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 ");
  }
  opened->DropCatalog("Plant1", {});
  EXPECT_FALSE(fs::exists(record.file));
}

TEST_F(historian, keeps_a_catalog_elsewhere_that_another_program_uses) {
  const auto opened = Open();
  const fs::path folder = m_root.Path() / "elsewhere";
  fs::create_directory(folder);
  const auto record = opened->CreateCatalog("Plant1", folder.string(), 0, {});
  {
    const Stranger stranger(record.file, "SELECT * FROM Tags");
    EXPECT_EQ(FailureOf([&] { opened->DropCatalog("Plant1", {}); }),
              "3803: The catalog Plant1 is in use by another program; close what reads or writes "
              "it and try again.");
    EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 ");
  }
  opened->DropCatalog("Plant1", {});
  EXPECT_EQ(Names(*opened), "Functions Orvane ");
  // It is left with what it holds, free for others and in the mode in which they do not wait.
  const Stranger stranger(record.file, "BEGIN IMMEDIATE; INSERT INTO Tags (Tag) VALUES ('T')");
  EXPECT_EQ(stranger.Result(), SQLITE_OK);
  std::ifstream file(record.file, std::ios::binary);
  file.seekg(18);
  EXPECT_EQ(file.get(), 2);
}

TEST_F(historian, drops_a_catalog_elsewhere_whose_file_is_gone_or_damaged_or_not_to_be_written) {
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

TEST_F(historian, drops_the_file_inside_its_folder_however_that_is_reached) {
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

// An engine that does something when a statement comes or before a transaction ends.
class Meddling final : public engines::Engine {
 public:
  std::function<void(const Text& sSql)> whenRun = [](const Text&) {};
  std::function<void()> beforeEnd = [] {};

  std::unique_ptr<engines::EngineSession> Open(const engines::Catalog& main,
                                               std::stop_token stop) override {
    return std::make_unique<Session>(*this, m_engine.Open(main, stop));
  }

 private:
  class Session final : public engines::EngineSession {
   public:
    Session(Meddling& engine, std::unique_ptr<engines::EngineSession> session)
        : m_engine(engine), m_session(std::move(session)) {}
    engines::EngineResult Run(const engines::EngineStatement& statement,
                              std::stop_token stop) override {
      auto result = m_session->Run(statement, stop);
      m_engine.whenRun(statement.sSql);
      return result;
    }
    std::vector<engines::TableSchema> Schema(const engines::Catalog& catalog,
                                             const engines::SchemaRequest& request,
                                             std::stop_token stop) override {
      return m_session->Schema(catalog, request, stop);
    }
    void InTransaction(std::span<const engines::Catalog> catalogs,
                       const std::function<void()>& work, std::stop_token stop) override {
      m_session->InTransaction(
          catalogs,
          [&] {
            work();
            m_engine.beforeEnd();
          },
          stop);
    }
    void Close() override { m_session->Close(); }

   private:
    Meddling& m_engine;
    std::unique_ptr<engines::EngineSession> m_session;
  };

  engines::SqliteEngine m_engine{std::chrono::milliseconds(50)};
};

[[noreturn]] void FailLikeAFullDisk() {
  throw platform::Failure(platform::failure::kStorage, "Full.");
}

class historian_meddled_with : public historian {
 protected:
  // How many rows the catalog can be given and gives back: 1 when it is whole.
  Text Rows(const CatalogRecord& record) {
    const auto session = m_engine.Open(EngineCatalog(record, false), {});
    session->Run({"INSERT OR REPLACE INTO Tags (Tag) VALUES ('T')", {}, {}}, {});
    const auto rs = session->Run({"SELECT count(*) FROM Tags", {}, {}}, {}).recordset;
    session->Close();
    // Where the file's header tells whether readers and the writer wait for each other.
    std::ifstream file(record.file, std::ios::binary);
    file.seekg(18);
    return platform::ToText(rs->ValueAt(0, 0)) + (file.get() == 2 ? " wal" : "");
  }

  Meddling m_meddling;
  Historian m_opened{m_root.Path(), "localhost", m_meddling, {}};
  std::stop_source m_stop;
};

TEST_F(historian_meddled_with, drops_nothing_when_it_is_stopped_on_its_way) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("DELETE")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
  EXPECT_EQ(Rows(record), "1 wal");
}

TEST_F(historian_meddled_with, drops_nothing_when_the_record_cannot_be_written) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  m_meddling.beforeEnd = FailLikeAFullDisk;
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", {}); }), "3807: Full.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
  EXPECT_EQ(Rows(record), "1 wal");
  m_meddling.beforeEnd = [] {};
  m_opened.DropCatalog("Plant1", {});
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(historian_meddled_with, a_stop_ends_the_wait_for_a_catalog_in_use) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  const Stranger stranger(record.file, "SELECT * FROM Tags");
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("DELETE")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
}

TEST_F(historian_meddled_with, creates_nothing_when_it_is_stopped_on_its_way) {
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("INSERT")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane ");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(historian_meddled_with, creates_nothing_when_the_record_cannot_be_written) {
  m_meddling.beforeEnd = FailLikeAFullDisk;
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }), "3807: Full.");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
  m_meddling.beforeEnd = [] {};
  EXPECT_EQ(Rows(m_opened.CreateCatalog("Plant1", "", 0, {})), "1 wal");
  // A second one of that name leaves the first one's file alone.
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }).substr(0, 4), "457:");
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }).substr(0, 4), "457:");
  EXPECT_EQ(Rows(*m_opened.Find("Plant1", {})), "1 wal");
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

TEST_F(historian, drops_neither_its_own_catalogs_nor_one_that_is_not_there) {
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

}  // namespace
}  // namespace orvane::provider::historian
