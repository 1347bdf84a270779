// Catalogs that several users reach: who may read them, and what reading leaves.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <map>

#include "provider/historian/functions_catalog.h"
#include "tests/provider/historian/colleagues.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

// Names, sizes and times of all there is in a folder, its own included.
std::map<Text, std::array<std::int64_t, 4>> StateOf(const fs::path& folder) {
  std::map<Text, std::array<std::int64_t, 4>> state;
  const auto look = [&](const fs::path& path) {
    struct stat entry {};
    lstat(path.c_str(), &entry);
    state[path.string()] = {entry.st_size, static_cast<std::int64_t>(entry.st_ino),
                            entry.st_mtim.tv_sec * 1'000'000'000 + entry.st_mtim.tv_nsec,
                            entry.st_ctim.tv_sec * 1'000'000'000 + entry.st_ctim.tv_nsec};
  };
  look(folder);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) look(entry.path());
  return state;
}

class shared_catalogs : public ColleaguesFixture {
 protected:
  static engines::EngineStatement Statement(const Text& sSql) {
    engines::EngineStatement statement;
    statement.sSql = sSql;
    return statement;
  }
  Text Count(const CatalogRecord& record) {
    const auto session = m_engine.Open(EngineCatalog(record, true), {});
    return platform::ToText(
        session->Run(Statement("SELECT count(*) FROM Tags"), {}).recordset->ValueAt(0, 0));
  }
};

TEST_F(shared_catalogs, reading_writes_nothing_beside_a_catalog_at_any_moment) {
  const auto record = Open()->CreateCatalog("Plant1", "", 0, {});
  EXPECT_EQ(Rows(record), "1");
  const auto before = StateOf(m_root.Historian());
  {
    const auto opened = Open();
    EXPECT_EQ(Names(*opened), "Functions Orvane Plant1 ");
    const auto catalog = EngineCatalog(record, true);
    const auto own = m_engine.Open(catalog, {});
    own->Run(Statement("SELECT * FROM Tags"), {});
    own->Schema(catalog, {}, {});
    auto reaching = Statement("SELECT * FROM Plant1.Tags");
    reaching.catalogs = {catalog};
    const auto session = m_engine.Open({}, {});
    session->InTransaction({&catalog, 1},
                           [&] {
                             session->Run(reaching, {});
                             EXPECT_EQ(StateOf(m_root.Historian()), before);
                           },
                           {});
    EXPECT_EQ(StateOf(m_root.Historian()), before);
  }
  EXPECT_EQ(StateOf(m_root.Historian()), before);
}

TEST_F(shared_catalogs, can_be_read_by_one_who_may_write_nothing) {
  const auto record = Open()->CreateCatalog("Plant1", "", 0, {});
  EXPECT_EQ(Rows(record), "1");
  const auto share = [&](fs::perms folders, fs::perms files) {
    fs::permissions(m_root.Path(), fs::perms::all);
    fs::permissions(m_root.Historian().parent_path(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(m_root.Historian())) {
      fs::permissions(entry.path(), entry.is_directory() ? folders : files);
    }
    fs::permissions(m_root.Historian(), folders);
  };
  using fs::perms;
  const auto read = perms::owner_read | perms::group_read | perms::others_read;
  const auto enter = perms::owner_exec | perms::group_exec | perms::others_exec;
  share(read | enter, read);
  Text sNames;
  Text sCount;
  Text sCreated;
  {
    const WithoutRoot withoutRoot;
    const auto opened = Open();
    sNames = Names(*opened);
    sCount = Count(*opened->Find("Plant1", {}));
    sCreated = FailureOf([&] { opened->CreateCatalog("Plant2", "", 0, {}); });
  }
  share(perms::owner_all, perms::owner_read | perms::owner_write);
  EXPECT_EQ(sNames, "Functions Orvane Plant1 ");
  EXPECT_EQ(sCount, "1");
  EXPECT_EQ(sCreated, "3801: You have no right to write into the folder " +
                          m_root.Historian().string() +
                          "; ask its owner for the right or choose another folder.");
}

TEST_F(shared_catalogs, a_colleague_who_reads_does_not_lock_the_owner_out) {
  GiveRootToOwner();
  ASSERT_EQ(chmod(m_root.Path().c_str(), 0770), 0);
  const auto write = [&] { return Rows(*Open()->Find("Plant1", {})) == "1" ? 0 : 1; };
  const auto read = [&] {
    // Never closed, and so never put away.
    auto* const opened = Open().release();
    const auto record = *opened->Find("Plant1", {});
    auto* const session = m_engine.Open(EngineCatalog(record, true), {}).release();
    const auto rs = session->Run(Statement("SELECT count(*) FROM Tags"), {}).recordset;
    return rs->ValueAt(0, 0) == platform::Value(std::int64_t{1}) ? 0 : 1;
  };
  ASSERT_EQ(CreatePlantAsOwner(), 0);
  ASSERT_EQ(As(kOwner, write), 0);
  // Until he shares it, nobody else gets at it.
  if (m_bAdministrator) {
    ASSERT_EQ(As(kColleague, read), 98);
  }
  for (const mode_t nFiles : {0640U, 0660U}) {
    ShareWithGroup(nFiles);
    const auto before = Content(m_root.Path());
    EXPECT_EQ(As(kColleague, read), 0);
    EXPECT_EQ(Content(m_root.Path()), before);
    EXPECT_EQ(As(kOwner, write), 0);
  }
  // Who may write as well leaves the owner his right too.
  EXPECT_EQ(As(kColleague, write), 0);
  EXPECT_EQ(As(kOwner, write), 0);
}

TEST_F(shared_catalogs, the_catalog_of_functions_is_made_anew_for_all_and_by_the_right_one) {
  if (!m_bAdministrator) GTEST_SKIP() << "only an administrator can become somebody else";
  GiveRootToOwner();
  const auto read = [&] {
    // Never closed, and so never put away.
    auto* const opened = Open().release();
    const auto record = *opened->Find("Functions", {});
    auto* const session = m_engine.Open(EngineCatalog(record, true), {}).release();
    return session->Run(Statement("SELECT * FROM Functions"), {}).recordset->RecordCount() > 0 ? 0
                                                                                               : 1;
  };
  ASSERT_EQ(As(kOwner, read), 0);
  ShareWithGroup();
  const fs::path functions = m_root.Historian() / FunctionsFile();
  const auto state = [&] {
    struct stat status {};
    EXPECT_EQ(stat(functions.c_str(), &status), 0);
    return std::array{status.st_uid, status.st_gid, status.st_mode & 07777U};
  };
  fs::remove(functions);
  EXPECT_EQ(As(kColleague, read, kColleaguesGroup), 0);
  EXPECT_EQ(state(), (std::array{kColleague, kGroup, 0660U}));
  EXPECT_EQ(As(kOwner, read), 0);
  // The owner keeps it back, and the colleague does without.
  ASSERT_EQ(chown(functions.c_str(), kOwner, kGroup), 0);
  ASSERT_EQ(chmod(functions.c_str(), 0600), 0);
  EXPECT_EQ(As(
                kColleague, [&] { return Names(*Open()) == "Functions Orvane " ? 0 : 1; },
                kColleaguesGroup),
            0);
  EXPECT_EQ(As(kColleague, read, kColleaguesGroup), 98);
  EXPECT_EQ(state(), (std::array{kOwner, kGroup, 0600U}));
  // A colleague's own is the owner's to make anew.
  ASSERT_EQ(chown(functions.c_str(), kColleague, kGroup), 0);
  EXPECT_EQ(As(kOwner, read), 0);
  EXPECT_EQ(state(), (std::array{kOwner, kGroup, 0660U}));
}

TEST_F(shared_catalogs, folders_keep_the_group_of_the_folder_above_where_that_says_so) {
  ASSERT_EQ(chmod(m_root.Path().c_str(), 02700), 0);
  const auto opened = Open();
  const auto mode = [](const fs::path& path) {
    return static_cast<unsigned>(fs::status(path).permissions());
  };
  EXPECT_EQ(mode(m_root.Historian()), 02700U);
  EXPECT_EQ(mode(m_root.Historian() / "catalogs"), 02700U);
}

TEST_F(shared_catalogs, a_file_of_an_older_version_is_taken_out_of_its_mode_by_its_owner_only) {
  const auto record = Open()->CreateCatalog("Plant1", "", 0, {});
  const auto isInLogMode = [&] {
    std::ifstream file(record.file, std::ios::binary);
    file.seekg(18);
    return file.get() == 2;
  };
  { const Stranger older(record.file, "PRAGMA journal_mode = WAL"); }
  ASSERT_TRUE(isInLogMode());
  const auto before = Content(m_root.Historian());
  if (geteuid() == 0) {
    fs::permissions(m_root.Path(), fs::perms::all);
    for (const auto& entry : fs::recursive_directory_iterator(m_root.Path())) {
      fs::permissions(entry.path(), fs::perms::all);
    }
    Text sFailure;
    {
      const WithoutRoot withoutRoot;
      sFailure = FailureOf([&] { Count(record); });
    }
    EXPECT_EQ(sFailure,
              "3801: The catalog \"Plant1\" cannot be opened: its file \"" + record.file.string() +
                  "\" is as an older version left it, so that reading it would lock its owner out; "
                  "ask its owner to open it once.");
    EXPECT_EQ(Content(m_root.Historian()), before);
  }
  EXPECT_EQ(Count(record), "0");
  EXPECT_FALSE(isInLogMode());
  EXPECT_EQ(Content(m_root.Historian()), before);
}

TEST_F(shared_catalogs, all_that_is_made_is_its_makers_alone_whatever_the_umask) {
  const fs::path folder = m_root.Path() / "elsewhere";
  fs::create_directory(folder);
  for (const mode_t nMask : {0U, 0777U}) {
    const mode_t nFormer = umask(nMask);
    fs::path elsewhere;
    {
      const auto opened = Open();
      opened->CreateCatalog("Plant1", "", 0, {});
      elsewhere = opened->CreateCatalog("Plant2", folder.string(), 0, {}).file;
    }
    umask(nFormer);
    const auto mode = [](const fs::path& path) {
      return static_cast<unsigned>(fs::status(path).permissions());
    };
    EXPECT_EQ(mode(elsewhere), 0600U);
    EXPECT_EQ(mode(m_root.Historian().parent_path()), 0700U);
    EXPECT_EQ(mode(m_root.Historian()), 0700U);
    for (const auto& entry : fs::recursive_directory_iterator(m_root.Historian())) {
      EXPECT_EQ(mode(entry.path()), entry.is_directory() ? 0700U : 0600U) << entry.path();
    }
    fs::remove_all(m_root.Path() / "historians");
    fs::remove(elsewhere);
  }
}

}  // namespace
}  // namespace orvane::provider::historian
