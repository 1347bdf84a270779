// Changes of catalogs that are stopped, fail or are killed on their way.
#include <unistd.h>

#include <fstream>
#include <functional>
#include <thread>
#include <vector>

#include "provider/historian/catalog_file.h"
#include "provider/historian/catalog_tables.h"
#include "provider/historian/functions_catalog.h"
#include "provider/historian/new_historian.h"
#include "tests/fakes/processes.h"
#include "tests/provider/historian/historian_fixture.h"
#include "tests/provider/historian/poor_disk.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

// An engine that does something when a statement comes or before a transaction ends.
class Meddling final : public engines::FileEngine {
 public:
  std::function<void(const Text& sSql)> whenRun = [](const Text&) {};
  std::function<void()> beforeEnd = [] {};

  std::unique_ptr<engines::FileSession> Open(const engines::Catalog& main,
                                             std::stop_token stop) override {
    return std::make_unique<Session>(*this, m_engine.Open(main, stop));
  }

 private:
  class Session final : public engines::FileSession {
   public:
    Session(Meddling& engine, std::unique_ptr<engines::FileSession> session)
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
    std::unique_ptr<engines::FileSession> m_session;
  };

  engines::SqliteEngine m_engine{std::chrono::milliseconds(50)};
};

[[noreturn]] void FailLikeAFullDisk() {
  throw platform::Failure(platform::failure::kStorage, "Full.");
}

class interrupted_changes : public HistorianFixture {
 protected:
  // A link in the historian's folder that says a change of that file was broken off.
  fs::path Note(const fs::path& file, const Text& sHiddenName = ".x.db.0000004000000000") const {
    const fs::path note = m_root.Historian() / (".change" + sHiddenName);
    fs::create_symlink(file, note);
    return note;
  }
  // A file elsewhere with the number that the note would have written into it.
  fs::path MarkedFile(std::string_view sStatements) const {
    fs::path file = m_root.Path() / "x.db";
    MakeCatalogFile(file, sStatements);
    const Stranger stranger(file, "PRAGMA user_version = 5");
    return file;
  }

  Meddling m_meddling;
  Historian m_opened{m_root.Path(), "localhost", m_meddling, {}};
  std::stop_source m_stop;
};

TEST_F(interrupted_changes, drops_nothing_when_it_is_stopped_on_its_way) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("DELETE")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
  EXPECT_EQ(Rows(record), "1");
}

TEST_F(interrupted_changes, drops_nothing_when_the_record_cannot_be_written) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  m_meddling.beforeEnd = FailLikeAFullDisk;
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", {}); }), "3807: Full.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
  EXPECT_EQ(Rows(record), "1");
  m_meddling.beforeEnd = [] {};
  m_opened.DropCatalog("Plant1", {});
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(interrupted_changes, a_stop_ends_the_wait_for_a_catalog_in_use) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  const Stranger stranger(record.file, "BEGIN; SELECT * FROM Tags");
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("DELETE")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.DropCatalog("Plant1", m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane Plant1 ");
}

TEST_F(interrupted_changes, creates_nothing_when_it_is_stopped_on_its_way) {
  m_meddling.whenRun = [&](const Text& sSql) {
    if (sSql.starts_with("INSERT")) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, m_stop.get_token()); }),
            "3712: The statement was cancelled.");
  EXPECT_EQ(Names(m_opened), "Functions Orvane ");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
}

TEST_F(interrupted_changes, creates_nothing_when_the_record_cannot_be_written) {
  m_meddling.beforeEnd = FailLikeAFullDisk;
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }), "3807: Full.");
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
  m_meddling.beforeEnd = [] {};
  EXPECT_EQ(Rows(m_opened.CreateCatalog("Plant1", "", 0, {})), "1");
  // A second one of that name leaves the first one's file alone.
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }).substr(0, 4), "457:");
  EXPECT_EQ(FailureOf([&] { m_opened.CreateCatalog("Plant1", "", 0, {}); }).substr(0, 4), "457:");
  EXPECT_EQ(Rows(*m_opened.Find("Plant1", {})), "1");
}

TEST_F(interrupted_changes, of_a_living_program_are_left_to_it) {
  m_meddling.whenRun = [&](const Text& sSql) {
    if (!sSql.starts_with("INSERT")) return;
    // The file is there and not yet recorded: another console opens the historian right now.
    const auto before = Content(m_root.Historian());
    EXPECT_EQ(Names(*Open()), "Functions Orvane ");
    EXPECT_EQ(Content(m_root.Historian()), before);
  };
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  m_meddling.whenRun = [](const Text&) {};
  EXPECT_EQ(Rows(record), "1");
  EXPECT_EQ(Content(m_root.Historian()),
            (std::set<Text>{"Orvane.db", FunctionsFile(), "catalogs", "catalogs/Plant1.db"}));
}

TEST_F(interrupted_changes, a_file_that_was_put_in_the_place_of_a_hidden_one_stays) {
  const auto record = m_opened.CreateCatalog("Plant1", "", 0, {});
  // As a kill in the middle of a drop leaves it, and a helpful hand after that.
  const fs::path hidden = record.file.parent_path() / ".Plant1.db.0123456789abcdef";
  fs::rename(record.file, hidden);
  fs::create_symlink(record.stored, m_root.Historian() / ".change.Plant1.db.0123456789abcdef");
  std::ofstream(record.file) << "a copy";
  Open();
  EXPECT_EQ(fs::file_size(record.file), 6U);
  EXPECT_TRUE(fs::exists(hidden));
  fs::remove(record.file);
  Open();
  EXPECT_EQ(Rows(record), "1");
  EXPECT_FALSE(fs::exists(hidden));
}

TEST_F(interrupted_changes, a_note_takes_no_file_that_holds_anything) {
  Open();
  const Text sNew(kNewCatalog);
  for (const Text& sHolds :
       {Text("CREATE TABLE Notes (Text)"), Text(), sNew + "; CREATE TABLE Notes (Text)",
        sNew + "; INSERT INTO Tags (Tag) VALUES ('T')",
        sNew + "; INSERT INTO Data2 (Tag, Timestamp) VALUES ('T', 1)"}) {
    const fs::path file = MarkedFile(sHolds);
    const fs::path note = Note(file);
    Open();
    EXPECT_TRUE(fs::exists(file)) << sHolds;
    EXPECT_FALSE(fs::is_symlink(note)) << sHolds;
    fs::remove(file);
  }
  // A new catalog that was never recorded is what a note is about.
  const fs::path file = MarkedFile(sNew);
  Note(file);
  Open();
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(interrupted_changes, a_note_takes_no_file_of_another_name) {
  Open();
  const fs::path hidden = m_root.Path() / ".x.db.0000004000000000";
  std::ofstream(hidden) << "hidden";
  const fs::path file = MarkedFile(kNewCatalog);
  const fs::path note = Note(file, ".y.db.0000004000000000");
  Open();
  EXPECT_TRUE(fs::exists(file));
  fs::remove(note);
  // Nor one that only looks like a hidden file.
  Note(hidden);
  Open();
  EXPECT_TRUE(fs::exists(hidden));
}

TEST_F(interrupted_changes, a_note_of_somebody_else_takes_no_file_of_the_opener) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
  constexpr uid_t kSomebody = 65534;
  Open();
  const fs::path file = MarkedFile(kNewCatalog);
  fs::path note = Note(file);
  ASSERT_EQ(lchown(note.c_str(), kSomebody, kSomebody), 0);
  Open();
  EXPECT_TRUE(fs::exists(file));
  EXPECT_FALSE(fs::is_symlink(note));
  // Nor a hidden file elsewhere, which is perhaps that of another historian.
  const fs::path hidden = m_root.Path() / ".x.db.0000004000000000";
  fs::rename(file, hidden);
  note = Note(file);
  ASSERT_EQ(lchown(note.c_str(), kSomebody, kSomebody), 0);
  Open();
  EXPECT_TRUE(fs::exists(hidden));
  EXPECT_FALSE(fs::is_symlink(note));
  // In the historian's folder it is what a colleague hid when he dropped a catalog.
  fs::rename(hidden, m_root.Historian() / "catalogs" / hidden.filename());
  note = Note("catalogs/x.db");
  ASSERT_EQ(lchown(note.c_str(), kSomebody, kSomebody), 0);
  Open();
  EXPECT_TRUE(fs::is_empty(m_root.Historian() / "catalogs"));
  EXPECT_FALSE(fs::is_symlink(note));
}

TEST_F(interrupted_changes, where_files_have_one_name_are_made_all_the_same) {
  EXPECT_EQ(fakes::InChild([&] {
              if (!tests::HaveNoHardLinks()) return 1;
              const auto record = Open()->CreateCatalog("Plant1", "", 0, {});
              if (Rows(record) != "1") return 2;
              Open()->DropCatalog("Plant1", {});
              // A file that somebody else has put there stays.
              std::ofstream(record.file) << "a copy";
              return FailureOf([&] { MakeCatalogFile(record.file, ""); }).starts_with("457:") ? 0
                                                                                              : 3;
            }),
            0);
  EXPECT_EQ(Content(m_root.Historian() / "catalogs"), std::set<Text>{"Plant1.db"});
  EXPECT_EQ(fs::file_size(m_root.Historian() / "catalogs" / "Plant1.db"), 6U);
}

TEST_F(interrupted_changes, are_refused_where_no_name_is_safe) {
  const fs::path file = m_root.Historian() / "catalogs" / "Plant1.db";
  EXPECT_EQ(fakes::InChild([&] {
              if (!tests::HaveNoSafeNames()) return 1;
              return FailureOf([&] { Open()->CreateCatalog("Plant1", "", 0, {}); }) ==
                             "3807: The file " + file.string() +
                                 " cannot be made, as its disk knows no safe way to name a new "
                                 "file; choose another folder."
                         ? 0
                         : 2;
            }),
            0);
  EXPECT_TRUE(fs::is_empty(file.parent_path()));
  EXPECT_EQ(Names(*Open()), "Functions Orvane ");
}

TEST_F(interrupted_changes, a_catalog_let_go_of_while_its_disk_is_away_keeps_its_file) {
  const fs::path disk = m_root.Path() / "disk";
  fs::create_directory(disk);
  for (const bool bDetached : {true, false}) {
    const auto record = m_opened.CreateCatalog("Plant1", disk.string(), 0, {});
    const fs::path hidden = disk / ".Plant1.db.0123456789abcdef";
    // As a kill right after it was recorded leaves it.
    fs::create_hard_link(record.file, hidden);
    fs::create_symlink(record.stored, m_root.Historian() / ".change.Plant1.db.0123456789abcdef");
    fs::rename(disk, m_root.Path() / "away");
    if (bDetached) {
      m_opened.DetachCatalog("Plant1", {});
    } else {
      m_opened.DropCatalog("Plant1", {});
    }
    fs::rename(m_root.Path() / "away", disk);
    EXPECT_EQ(Names(*Open()), "Functions Orvane ");
    EXPECT_EQ(Rows(record), "1");
    fs::remove(hidden);
    fs::remove(record.file);
  }
}

TEST_F(interrupted_changes, folders_of_historians_in_the_making_go_with_their_makers) {
  const fs::path historians = m_root.Historian().parent_path();
  fs::create_directories(historians / ".new-Ab3dEf" / "catalogs");
  std::ofstream(historians / ".new-Ab3dEf" / "Orvane.db") << "x";
  fs::create_directory(historians / ".newer");
  const NewHistorian living(m_root.Historian("Plant7"));
  Open();
  EXPECT_FALSE(fs::exists(historians / ".new-Ab3dEf"));
  EXPECT_TRUE(fs::exists(historians / ".newer"));
  EXPECT_TRUE(fs::exists(living.Hidden()));
}

TEST_F(interrupted_changes, a_folder_in_the_making_is_made_again_when_another_program_removes_it) {
  const fs::path historians = m_root.Historian().parent_path();
  fs::create_directories(historians);
  std::vector<std::jthread> removers;
  for (int i = 0; i < 4; ++i) {
    removers.emplace_back([&](std::stop_token stop) {
      while (!stop.stop_requested()) NewHistorian::RemoveLeftovers(historians);
    });
  }
  for (int i = 0; i < 2000; ++i) {
    const NewHistorian made(m_root.Historian());
    ASSERT_TRUE(fs::is_directory(made.Hidden()));
    std::ofstream(made.Hidden() / "Orvane.db") << "x";
    ASSERT_TRUE(fs::exists(made.Hidden() / "Orvane.db"));
  }
}

}  // namespace
}  // namespace orvane::provider::historian
