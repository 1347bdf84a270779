// The program orvane-tour: through the components of this build tree on a historian of its own.
#include <gmock/gmock.h>

#include <QFile>
#include <QImage>

#include "tests/console/app/program_fixture.h"

namespace orvane::console {
namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class TourTest : public ProgramTest {
 protected:
  Outcome Tour(QStringList arguments) {
    arguments << "--registry" << m_folder.filePath("components");
    return Run(ORVANE_TOUR, arguments);
  }
  QString Folder() const { return m_folder.filePath("tour"); }
  QString CopyOfSample(const char* sName, const QByteArray& sFrom, const QByteArray& sTo) const {
    QFile sample(ORVANE_SAMPLE);
    EXPECT_TRUE(sample.open(QIODevice::ReadOnly));
    QFile copy(m_folder.filePath(sName));
    EXPECT_TRUE(copy.open(QIODevice::WriteOnly));
    copy.write(sample.readAll().replace(sFrom, sTo));
    return copy.fileName();
  }
};

TEST_F(TourTest, does_the_main_job_and_leaves_texts_pictures_and_a_copy) {
  RegisterComponents();
  FillHistorian();
  const auto outcome = Tour({Folder(), ORVANE_SAMPLE});
  ASSERT_EQ(outcome.iExit, 0) << outcome.sError;
  EXPECT_EQ(outcome.sError, "");
  EXPECT_THAT(outcome.sOut, StartsWith("ORVANE Servers\n  localhost\n    Catalogs\n"));
  EXPECT_THAT(outcome.sOut, HasSubstr("\n      Machine\n        Data\n"));
  EXPECT_THAT(outcome.sOut, HasSubstr("\n    Queries\n      Processor load, last hour\n"));
  EXPECT_THAT(outcome.sOut, ContainsRegex("Table Machine..Data\n  Tag +Timestamp +Value"));
  // This machine's own counters, whichever come first.
  EXPECT_THAT(outcome.sOut, ContainsRegex("\n  (cpu|load|memory|network)\\.[a-z0-9.]+ +2"));
  EXPECT_THAT(outcome.sOut, ContainsRegex("[0-9]+ rows\n\nStructure of Data\n"));
  EXPECT_THAT(outcome.sOut, ContainsRegex("Structure of Data\n  Column name +Data type"));
  EXPECT_THAT(outcome.sOut, HasSubstr("Query \"Processor load, last hour\""));
  for (const char* sName :
       {"1-logon.png", "2-tree.png", "3-table.png", "4-structure.png", "5-query.png"}) {
    EXPECT_FALSE(QImage(QDir(Folder()).filePath(sName)).isNull()) << sName;
  }
  // The copy is a document like any other, and a second tour takes the first one's place.
  const QString sCopy = m_folder.filePath("second.orvc");
  ASSERT_TRUE(QFile::copy(QDir(Folder()).filePath("copy.orvc"), sCopy));
  EXPECT_EQ(Tour({Folder(), sCopy}).iExit, 0);
  // What a user has open and remembered is none of the tour's.
  EXPECT_FALSE(QFile::exists(m_folder.filePath("config/orvane-console.conf")));
}

TEST_F(TourTest, needs_no_screen_and_no_word_about_it) {
  m_environment.remove("QT_QPA_PLATFORM");
  m_environment.remove("DISPLAY");
  m_environment.remove("WAYLAND_DISPLAY");
  RegisterComponents();
  FillHistorian();
  const auto outcome = Tour({Folder(), ORVANE_SAMPLE});
  EXPECT_EQ(outcome.iExit, 0);
  EXPECT_EQ(outcome.sError, "");
}

TEST_F(TourTest, message_on_the_way_ends_it_with_what_it_says) {
  RegisterComponents();
  FillHistorian();
  // Its seal does not fit any more, which is asked about.
  const auto changed = CopyOfSample("changed.orvc", "orvanesnapin", "somebody");
  const auto outcome = Tour({Folder(), changed});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_THAT(outcome.sError, StartsWith("orvane-tour: Opening the document failed: "));
  EXPECT_THAT(outcome.sError, HasSubstr("was changed outside the console"));
  EXPECT_EQ(outcome.sOut, "");
}

TEST_F(TourTest, historian_without_what_is_to_be_seen_ends_it) {
  RegisterComponents();
  // The sample's query reads a catalog that nobody has recorded into.
  ASSERT_EQ(Run(ORVANE_HISTORIAN, {"init"}).iExit, 0);
  const auto outcome = Tour({Folder(), ORVANE_SAMPLE});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_THAT(LastLine(outcome.sError),
              StartsWith("orvane-tour: Selecting an item failed: There is no catalog \"Machine\""));
  EXPECT_THAT(outcome.sOut, Not(HasSubstr("Saved, with pictures")));
}

TEST_F(TourTest, without_components_it_ends_with_one_sentence) {
  // Beside the one that was built lie the components that were built.
  ASSERT_TRUE(QDir().mkpath(m_folder.filePath("program/bin")));
  const QString sProgram = m_folder.filePath("program/bin/orvane-tour");
  ASSERT_TRUE(QFile::copy(ORVANE_TOUR, sProgram));
  const auto outcome = Run(qPrintable(sProgram), {Folder(), ORVANE_SAMPLE});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_THAT(outcome.sError, StartsWith("orvane-tour: The tree is empty: "));
  EXPECT_THAT(outcome.sError, HasSubstr("ORVOLEDBSnapIn"));
}

TEST_F(TourTest, what_is_wrong_with_the_command_line_is_one_sentence) {
  for (const auto& arguments :
       {QStringList{}, QStringList{Folder()}, QStringList{"--no-such-option"}}) {
    const auto outcome = Run(ORVANE_TOUR, arguments);
    EXPECT_EQ(outcome.iExit, 1);
    EXPECT_EQ(outcome.sOut, "");
    EXPECT_THAT(outcome.sError, StartsWith("orvane-tour: "));
    EXPECT_THAT(outcome.sError, EndsWith("; see orvane-tour --help.\n"));
  }
  EXPECT_EQ(Tour({Folder(), "missing.orvc"}).sError,
            "orvane-tour: There is no document missing.orvc; check its name.\n");
  const auto help = Run(ORVANE_TOUR, {"--help"});
  EXPECT_EQ(help.iExit, 0);
  EXPECT_THAT(help.sOut, HasSubstr("DOCUMENT"));
}

TEST_F(TourTest, folder_that_cannot_be_made_is_one_sentence) {
  const auto outcome = Tour({"/proc/orvane-tour", ORVANE_SAMPLE});
  EXPECT_EQ(outcome.iExit, 1);
  EXPECT_EQ(outcome.sError, "orvane-tour: The folder /proc/orvane-tour cannot be made.\n");
}

}  // namespace
}  // namespace orvane::console
