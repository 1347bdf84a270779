#include "console/document/user_views.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include "console/document/user_settings.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;

class user_views : public testing::Test {
 protected:
  /// What is kept for the path under "n", or nothing.
  Value Kept(const Text& sPath) {
    DocumentBag bag;
    if (!m_views.Read(sPath, bag)) {
      EXPECT_EQ(bag.Count(), 0U);
      return {};
    }
    return bag.ReadProperty("n", "none");
  }
  void Keep(const Text& sPath, Long lValue) {
    DocumentBag bag;
    bag.WriteProperty("n", lValue);
    m_views.Keep(sPath, bag);
  }

  QTemporaryDir m_folder;
  QSettings m_settings{m_folder.filePath("settings.conf"), QSettings::NativeFormat};
  UserViews m_views{m_settings};
};

TEST_F(user_views, are_kept_by_the_paths_of_documents_and_outlive_the_program) {
  EXPECT_EQ(Kept("/a.orvc"), Value());
  Keep("/a.orvc", 1);
  Keep("/\xFF \n.orvc", 2);
  Keep("/a.orvc", 3);
  m_settings.sync();
  QSettings later(m_settings.fileName(), QSettings::NativeFormat);
  DocumentBag bag;
  EXPECT_TRUE(UserViews(later).Read("/a.orvc", bag));
  EXPECT_EQ(bag.ReadProperty("n", {}), Value(Long{3}));
  EXPECT_EQ(Kept("/\xFF \n.orvc"), Value(Long{2}));
  EXPECT_EQ(Kept("/b.orvc"), Value());
}

TEST_F(user_views, are_those_of_the_documents_used_last) {
  for (Long l = 0; l <= UserViews::kMaximum; ++l) {
    Keep("/" + std::to_string(l), l);
    Keep("/0", 1000);
  }
  EXPECT_EQ(Kept("/0"), Value(Long{1000}));
  EXPECT_EQ(Kept("/1"), Value());
  EXPECT_EQ(Kept("/2"), Value(Long{2}));
  EXPECT_EQ(Kept("/" + std::to_string(UserViews::kMaximum)), Value(Long{UserViews::kMaximum}));
  m_settings.beginGroup("DocumentViews");
  EXPECT_EQ(m_settings.childKeys().size(), UserViews::kMaximum + 1);
}

TEST_F(user_views, are_the_users_alone) {
  const mode_t before = umask(0);
  KeepToUser(m_settings);
  Keep("/a.orvc", 1);
  m_settings.sync();
  umask(before);
  struct stat status {};
  ASSERT_EQ(stat(m_settings.fileName().toStdString().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
}

// Settings of an earlier version, or put back from somewhere.
TEST_F(user_views, become_the_users_alone_where_others_could_read_them) {
  const auto sFile = m_settings.fileName().toStdString();
  Keep("/a.orvc", 1);
  m_settings.sync();
  const auto modeFor = [&](mode_t before) {
    EXPECT_EQ(chmod(sFile.c_str(), before), 0);
    KeepToUser(m_settings);
    Keep("/a.orvc", 2);
    m_settings.sync();
    struct stat status {};
    EXPECT_EQ(stat(sFile.c_str(), &status), 0);
    return status.st_mode & 07777;
  };
  EXPECT_EQ(modeFor(0644), 0600U);
  EXPECT_EQ(modeFor(0666), 0600U);
  EXPECT_EQ(modeFor(0600), 0600U);
  EXPECT_EQ(Kept("/a.orvc"), Value(Long{2}));
  // Who has made them read-only means it.
  EXPECT_EQ(chmod(sFile.c_str(), 0444), 0);
  KeepToUser(m_settings);
  struct stat status {};
  ASSERT_EQ(stat(sFile.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0400U);
}

TEST_F(user_views, behind_a_link_become_the_users_alone_and_stay_behind_it) {
  const auto sTarget = m_folder.filePath("kept.conf").toStdString();
  ASSERT_EQ(symlink("kept.conf", m_settings.fileName().toStdString().c_str()), 0);
  for (const bool bThere : {false, true}) {
    if (bThere) {
      ASSERT_EQ(chmod(sTarget.c_str(), 0644), 0);
    }
    KeepToUser(m_settings);
    Keep("/a.orvc", 1);
    m_settings.sync();
    struct stat status {};
    ASSERT_EQ(stat(sTarget.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600U) << bThere;
    EXPECT_TRUE(QFileInfo(m_settings.fileName()).isSymLink());
  }
}

TEST_F(user_views, that_cannot_be_read_are_none) {
  Keep("/a.orvc", 1);
  m_settings.beginGroup("DocumentViews");
  const QString key = m_settings.value("Latest").toStringList().value(0);
  const QByteArray whole = m_settings.value(key).toByteArray();
  for (const QByteArray& bad :
       {QByteArray("x"), whole.first(whole.size() / 2), QByteArray(whole).replace(":1}", ":2}"),
        QByteArray("\xFF\0\n", 3)}) {
    m_settings.setValue(key, bad);
    m_settings.endGroup();
    EXPECT_EQ(Kept("/a.orvc"), Value());
    m_settings.beginGroup("DocumentViews");
  }
}

}  // namespace
}  // namespace orvane::console
