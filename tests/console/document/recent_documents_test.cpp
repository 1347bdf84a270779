#include "console/document/recent_documents.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include "console/document/user_settings.h"

namespace orvane::console {
namespace {

using platform::Text;
using testing::ElementsAre;
using testing::IsEmpty;

class recent_documents : public testing::Test {
 protected:
  Text File(const QString& sName) {
    const QString sPath = m_folder.filePath(sName);
    QFile file(sPath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return sPath.toStdString();
  }

  QTemporaryDir m_folder;
  QSettings m_settings{m_folder.filePath("settings.ini"), QSettings::IniFormat};
  RecentDocuments m_recent{m_settings};
};

TEST_F(recent_documents, are_none_at_first) {
  EXPECT_THAT(m_recent.List(), IsEmpty());
}

TEST_F(recent_documents, are_kept_in_settings_that_are_their_users_alone_whatever_the_umask) {
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.filePath("settings"));
  const auto modeOf = [&](const QString& sName) {
    struct stat status {};
    EXPECT_EQ(stat(m_folder.filePath(sName).toLocal8Bit().constData(), &status), 0);
    return status.st_mode & 07777U;
  };
  for (const mode_t mask : {0000U, 0022U, 0777U}) {
    const mode_t before = umask(mask);
    {
      // As the program keeps them: those of the user, by the names of maker and program.
      QSettings settings(QSettings::IniFormat, QSettings::UserScope, "maker", "program");
      KeepToUser(settings);
      RecentDocuments(settings).Add(File("a.orvc"));
    }
    umask(before);
    EXPECT_EQ(modeOf("settings"), 0700U);
    EXPECT_EQ(modeOf("settings/maker"), 0700U);
    EXPECT_EQ(modeOf("settings/maker/program.ini"), 0600U);
    QDir(m_folder.filePath("settings")).removeRecursively();
    QFile::remove(m_folder.filePath("a.orvc"));
  }
}

TEST_F(recent_documents, come_newest_first_and_once) {
  const Text sA = File("a.orvc");
  const Text sB = File("b.orvc");
  m_recent.Add(sA);
  m_recent.Add(sB);
  m_recent.Add(sA);
  EXPECT_THAT(m_recent.List(), ElementsAre(sA, sB));
}

TEST_F(recent_documents, are_ten_at_most) {
  for (int i = 0; i < 12; ++i) m_recent.Add(File(QString("%1.orvc").arg(i)));
  const std::vector<Text> paths = m_recent.List();
  ASSERT_EQ(paths.size(), 10U);
  EXPECT_EQ(paths.front(), m_folder.filePath("11.orvc").toStdString());
  EXPECT_EQ(paths.back(), m_folder.filePath("2.orvc").toStdString());
}

TEST_F(recent_documents, that_are_gone_are_forgotten) {
  const Text sA = File("a.orvc");
  const Text sB = File("b.orvc");
  m_recent.Add(sA);
  m_recent.Add(sB);
  QFile::remove(QString::fromStdString(sB));
  EXPECT_THAT(m_recent.List(), ElementsAre(sA));
  File("b.orvc");
  EXPECT_THAT(m_recent.List(), ElementsAre(sA));
}

TEST_F(recent_documents, that_could_not_be_opened_are_forgotten_when_they_are_gone) {
  const Text sA = File("a.orvc");
  const Text sB = File("b.orvc");
  m_recent.Add(sA);
  m_recent.Add(sB);
  m_recent.RemoveIfGone(sA);
  EXPECT_THAT(m_recent.List(), ElementsAre(sB, sA));
  QFile::remove(QString::fromStdString(sA));
  m_recent.RemoveIfGone(sA);
  File("a.orvc");
  EXPECT_THAT(m_recent.List(), ElementsAre(sB));
}

TEST_F(recent_documents, are_kept_in_the_settings) {
  const Text sA = File("Größe 日本.orvc");
  m_recent.Add(sA);
  m_settings.sync();
  QSettings again(m_settings.fileName(), QSettings::IniFormat);
  EXPECT_THAT(RecentDocuments(again).List(), ElementsAre(sA));
}

}  // namespace
}  // namespace orvane::console
