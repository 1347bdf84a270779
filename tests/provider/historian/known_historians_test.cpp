#include "provider/historian/known_historians.h"

#include <sys/stat.h>

#include <fstream>

#include "tests/provider/historian/historian_fixture.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

class known_historians : public HistorianFixture {
 protected:
  Text FailureOfOpening(const Text& sServer) {
    return FailureOf([&] { Open(sServer, m_known); });
  }
  Text Gone(const Text& sServer, const Text& sTyped) const {
    return "3800: The historian \"" + sServer + "\" was in the folder " +
           m_root.Historian(sServer).string() +
           " and is gone: bring that back (its disk may not be mounted), or make a new, empty one "
           "with \"orvane-historian init " +
           sTyped + "\".";
  }

  TemporaryRoot m_state;
  KnownHistorians m_known{m_state.Path() / "orvane" / "historians"};
};

TEST_F(known_historians, the_default_server_is_made_only_when_it_was_never_there) {
  Open("localhost", m_known);
  fs::rename(m_root.Historian(), m_root.Historian("renamed"));
  EXPECT_EQ(FailureOfOpening("localhost"), Gone("localhost", "localhost"));
  EXPECT_FALSE(fs::exists(m_root.Historian()));
  fs::rename(m_root.Historian("renamed"), m_root.Historian());
  EXPECT_EQ(FailureOfOpening("localhost"), "no failure");
}

TEST_F(known_historians, a_root_that_is_gone_is_told_as_well) {
  Open("localhost", m_known);
  fs::remove_all(m_root.Path() / "historians");
  EXPECT_EQ(FailureOfOpening("localhost"), Gone("localhost", "localhost"));
  EXPECT_TRUE(fs::is_empty(m_root.Path()));
}

TEST_F(known_historians, any_other_server_is_told_to_be_gone_too_with_what_to_type) {
  Historian::Make(m_root.Path(), "Plant 7's");
  Open("Plant 7's", m_known);
  fs::remove_all(m_root.Historian("Plant 7's"));
  EXPECT_EQ(FailureOfOpening("Plant 7's"), Gone("Plant 7's", "'Plant 7'\\''s'"));
  EXPECT_EQ(FailureOfOpening("Plant8"),
            "3800: There is no historian \"Plant8\" on this machine; make it with "
            "\"orvane-historian init Plant8\" or choose another server.");
}

TEST_F(known_historians, a_link_to_a_disk_that_is_not_mounted_is_not_a_place_for_a_new_one) {
  fs::create_directories(m_root.Path() / "historians");
  fs::create_directory_symlink("/nowhere/localhost", m_root.Historian());
  EXPECT_EQ(FailureOfOpening("localhost"), Gone("localhost", "localhost"));
}

TEST_F(known_historians, one_that_is_asked_for_is_made_again) {
  Open("localhost", m_known);
  fs::remove_all(m_root.Historian());
  Historian::Make(m_root.Path(), "localhost");
  EXPECT_EQ(Names(*Open("localhost", m_known)), "Functions Orvane ");
}

TEST_F(known_historians, know_one_that_was_made_and_never_opened) {
  Historian::Make(m_root.Path(), "localhost", m_known);
  fs::remove_all(m_root.Historian());
  EXPECT_EQ(FailureOfOpening("localhost"), Gone("localhost", "localhost"));
}

TEST_F(known_historians, are_remembered_once_by_their_whole_paths_in_a_file_of_the_users_own) {
  const mode_t mask = umask(0);
  const fs::path odd = m_root.Path() / "with\nbreak" / "%0A";
  m_known.Remember(odd);
  m_known.Remember(odd / ".." / "%0A");
  umask(mask);
  EXPECT_TRUE(m_known.Has(odd));
  EXPECT_FALSE(m_known.Has(odd.parent_path()));
  EXPECT_FALSE(m_known.Has(m_root.Path() / "with"));
  const fs::path file = m_state.Path() / "orvane" / "historians";
  EXPECT_EQ(fs::file_size(file), odd.string().size() + 2 + 2 + 2);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);
}

TEST_F(known_historians, whoever_cannot_remember_works_all_the_same) {
  std::ofstream(m_state.Path() / "orvane") << "no folder";
  EXPECT_EQ(FailureOfOpening("localhost"), "no failure");
  EXPECT_FALSE(m_known.Has(m_root.Historian()));
  ASSERT_EQ(mkfifo((m_state.Path() / "pipe").c_str(), 0600), 0);
  const KnownHistorians pipe(m_state.Path() / "pipe");
  pipe.Remember("/x");
  EXPECT_FALSE(pipe.Has("/x"));
}

}  // namespace
}  // namespace orvane::provider::historian
