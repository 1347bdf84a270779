// Whatever a program is killed at, the next opening of the historian puts it right.
#include <fstream>
#include <functional>

#include "provider/historian/functions_catalog.h"
#include "tests/fakes/killed_program.h"
#include "tests/provider/historian/historian_fixture.h"
#include "tests/provider/historian/poor_disk.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
using tests::Ended;
using tests::KilledBefore;
namespace fs = std::filesystem;

class killed_programs : public HistorianFixture {
 protected:
  // Kills the work, each time on a root as "prepare" leaves it, at its first change to files, then
  // at its second, and so on until it gets through, and then looks at what is there.
  void KillAtEachStep(const std::function<void()>& prepare, const std::function<void()>& work,
                      const std::function<void()>& check) {
    constexpr int kFewest = 4;
    constexpr int kMost = 2000;
    for (int nCall = 1; nCall < kMost; ++nCall) {
      for (const auto& entry : fs::directory_iterator(m_root.Path())) fs::remove_all(entry.path());
      fs::create_directory(m_elsewhere);
      prepare();
      const Ended ended = KilledBefore(nCall, work);
      ASSERT_NE(ended, Ended::Untraceable) << "this machine lets no process be traced";
      const Text sFailure = FailureOf(check);
      EXPECT_EQ(sFailure, "no failure") << "killed before the change " << nCall;
      if (HasFailure()) return;
      if (ended == Ended::Killed) continue;
      EXPECT_GT(nCall, kFewest);
      return;
    }
    ADD_FAILURE() << "The work does not come to its end.";
  }
  // The catalog is there whole or not at all, can be used or made, and nothing else is there.
  void ExpectWholeOrNotAtAll(const Text& sPath) {
    const auto opened = Open();
    auto record = opened->Find("Plant1", {});
    std::set<Text> expected{"historians",
                            "historians/localhost",
                            "historians/localhost/Orvane.db",
                            "historians/localhost/" + FunctionsFile(),
                            "historians/localhost/catalogs",
                            "elsewhere"};
    const Text sFile =
        sPath.empty() ? "historians/localhost/catalogs/Plant1.db" : "elsewhere/Plant1.db";
    if (record) expected.insert(sFile);
    EXPECT_EQ(Content(m_root.Path()), expected);
    if (!record) record = opened->CreateCatalog("Plant1", sPath, 0, {});
    EXPECT_EQ(Rows(*record), "1");
    expected.insert(sFile);
    EXPECT_EQ(Content(m_root.Path()), expected);
    opened->DropCatalog("Plant1", {});
    if (sPath.empty()) expected.erase(sFile);
    EXPECT_EQ(Content(m_root.Path()), expected);
  }

  fs::path m_elsewhere = m_root.Path() / "elsewhere";
};

TEST_F(killed_programs, in_create_database) {
  KillAtEachStep([&] { Open(); }, [&] { Open()->CreateCatalog("Plant1", "", 0, {}); },
                 [&] { ExpectWholeOrNotAtAll(""); });
}

TEST_F(killed_programs, in_create_database_at_a_path_of_its_own) {
  KillAtEachStep([&] { Open(); },
                 [&] { Open()->CreateCatalog("Plant1", m_elsewhere.string(), 0, {}); },
                 [&] { ExpectWholeOrNotAtAll(m_elsewhere.string()); });
}

TEST_F(killed_programs, in_create_database_where_files_have_one_name) {
  KillAtEachStep([&] { Open(); },
                 [&] {
                   if (!tests::HaveNoHardLinks()) return;
                   Open()->CreateCatalog("Plant1", m_elsewhere.string(), 0, {});
                 },
                 [&] { ExpectWholeOrNotAtAll(m_elsewhere.string()); });
}

TEST_F(killed_programs, in_drop_database) {
  KillAtEachStep([&] { Open()->CreateCatalog("Plant1", "", 0, {}); },
                 [&] { Open()->DropCatalog("Plant1", {}); }, [&] { ExpectWholeOrNotAtAll(""); });
}

TEST_F(killed_programs, in_making_a_historian) {
  KillAtEachStep([] {}, [&] { Open(); }, [&] { ExpectWholeOrNotAtAll(""); });
}

TEST_F(killed_programs, in_making_the_catalog_of_functions_anew) {
  KillAtEachStep(
      [&] {
        Open();
        std::ofstream(m_root.Historian() / FunctionsFile()) << "x";
      },
      [&] { Open(); }, [&] { ExpectWholeOrNotAtAll(""); });
}

TEST_F(killed_programs, in_putting_right_what_another_one_left) {
  KillAtEachStep(
      [&] {
        Open()->CreateCatalog("Plant1", "", 0, {});
        const auto drop = [&] { Open()->DropCatalog("Plant1", {}); };
        // Killed when its file has just been hidden.
        const fs::path file = m_root.Historian() / "catalogs" / "Plant1.db";
        for (int nCall = 1; KilledBefore(nCall, drop) == Ended::Killed && fs::exists(file);) {
          ++nCall;
        }
      },
      [&] { Open(); }, [&] { ExpectWholeOrNotAtAll(""); });
}

TEST_F(killed_programs, in_writing_rows) {
  KillAtEachStep([&] { Open()->CreateCatalog("Plant1", "", 0, {}); },
                 [&] { Rows(*Open()->Find("Plant1", {})); },
                 [&] {
                   // Whoever reads next sees all of it or nothing.
                   const auto opened = Open();
                   const auto catalog = EngineCatalog(*opened->Find("Plant1", {}), true);
                   engines::EngineStatement statement;
                   statement.sSql = "SELECT count(*) FROM Plant1.Tags";
                   statement.catalogs = {catalog};
                   const auto rs = m_engine.Open({}, {})->Run(statement, {}).recordset;
                   EXPECT_LE(platform::ToText(rs->ValueAt(0, 0)), "1");
                   ExpectWholeOrNotAtAll("");
                 });
}

}  // namespace
}  // namespace orvane::provider::historian
