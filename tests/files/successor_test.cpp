#include "files/successor.h"

#include <fcntl.h>

#include <cerrno>
#include <system_error>

#include "tests/files/temporary_folder.h"

namespace orvane::files {
namespace {

class successor : public FolderTest {
 protected:
  std::string Hidden(const std::string& sEnd) const {
    return Beside(Path(), sEnd.c_str()).string();
  }
  /// The error number of what the work fails with, 0 for none.
  template <class Work>
  static int ErrorOf(Work work) {
    try {
      work();
    } catch (const std::system_error& error) {
      return error.code().value();
    }
    return 0;
  }
};

constexpr SuccessorOptions kNamed{".next", 0600};
constexpr SuccessorOptions kNumbered{".next", 0600, false, 3};
constexpr SuccessorOptions kNameless{".next", 0600, true, 3};

TEST_F(successor, is_gone_at_the_end_unless_it_succeeds_or_stays) {
  for (const auto& options : {kNamed, kNumbered, kNameless}) {
    { const Successor next(Path(), options); }
    EXPECT_EQ(FilesInFolder(), 0U);
  }
  {
    Successor next(Path(), kNamed);
    next.Stay(true);
  }
  EXPECT_TRUE(std::filesystem::exists(Hidden(".next")));
}

TEST_F(successor, takes_a_free_name_or_that_of_the_file_that_is_there) {
  for (const auto& options : {kNamed, kNumbered, kNameless}) {
    for (const char* const sBytes : {"first", "second"}) {
      Successor next(Path(), options);
      ASSERT_EQ(WriteAt(next.File(), 0, sBytes), 0);
      next.Succeed(Path());
      EXPECT_EQ(BytesOf(Path()), sBytes);
      EXPECT_EQ(FilesInFolder(), 1U);
    }
    std::filesystem::remove(Path());
  }
}

TEST_F(successor, clears_what_a_crash_left_and_passes_over_what_is_in_use) {
  WriteBytes(Hidden(".0.next"), "left");
  { const Successor next(Path(), kNumbered); }
  EXPECT_EQ(FilesInFolder(), 0U);
  const Successor first(Path(), kNumbered);
  const Successor second(Path(), kNumbered);
  EXPECT_TRUE(IsUnderName(first.File(), Hidden(".0.next").c_str()));
  EXPECT_TRUE(IsUnderName(second.File(), Hidden(".1.next").c_str()));
  const Successor third(Path(), kNumbered);
  EXPECT_EQ(ErrorOf([&] { const Successor fourth(Path(), kNumbered); }), EBUSY);
}

TEST_F(successor, is_made_again_when_it_was_cleared_before_it_was_locked) {
  static int s_nLocks;
  static std::string s_sHidden;
  s_nLocks = 0;
  s_sHidden = Hidden(".next");
  SuccessorOptions options = kNamed;
  options.lock = [](int iDescriptor, int iOperation) {
    // Another program takes it for what a crash left.
    if (++s_nLocks == 1) unlink(s_sHidden.c_str());
    return flock(iDescriptor, iOperation);
  };
  const Successor next(Path(), options);
  EXPECT_EQ(s_nLocks, 2);
  EXPECT_TRUE(IsUnderName(next.File(), s_sHidden.c_str()));
}

TEST_F(successor, puts_no_other_file_in_the_place) {
  WriteBytes(Path(), "old");
  Successor next(Path(), kNamed);
  std::filesystem::remove(Hidden(".next"));
  WriteBytes(Hidden(".next"), "a stranger's");
  EXPECT_EQ(ErrorOf([&] { next.Succeed(Path()); }), ESTALE);
  EXPECT_EQ(BytesOf(Path()), "old");
}

TEST_F(successor, works_in_the_folder_where_one_is) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(Folder());
  for (const auto& options : {kNamed, kNameless}) {
    Successor next("here", options);
    next.Succeed("here");
  }
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::exists(Path("here")));
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(successor, opens_only_what_is_a_file) {
  EXPECT_FALSE(OpenPresent(Path()).file);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ErrorOf([&] { OpenPresent(Path("pipe")); }), EINVAL);
  EXPECT_EQ(ErrorOf([&] { OpenPresent(Folder()); }), EISDIR);
}

}  // namespace
}  // namespace orvane::files
