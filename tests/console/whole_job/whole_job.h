// The whole job of an administrator as steps, done by the hands of one device on a stage. Its steps
// stand in files of their own by what they are about.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QTemporaryDir>

#include "tests/console/whole_job/hands.h"
#include "tests/console/whole_job/new_user.h"

namespace orvane::console {

enum class Device { Mouse, Keyboard };

/// Names the device where the test program lists its cases.
inline void PrintTo(Device device, std::ostream* out) {
  *out << (device == Device::Mouse ? "mouse" : "keyboard");
}

/// The query "Samples", which names its rows per tag.
inline const platform::Text kSamplesSql =
    "SELECT Tag, COUNT(*) AS Samples FROM Boiler..Data GROUP BY Tag";

class WholeJobTest : public testing::TestWithParam<Device> {
 protected:
  WholeJobTest()
      : m_stage(qgetenv("DISPLAY").toStdString(),
                RegisterComponents(m_folder.path().toStdString())) {
    // Every historian begins as it does for a new user.
    qputenv("XDG_DATA_HOME", m_folder.filePath("data").toUtf8());
    qputenv("XDG_STATE_HOME", m_folder.filePath("state").toUtf8());
    if (GetParam() == Device::Mouse) {
      m_hands = std::make_unique<MouseHands>(m_stage);
    } else {
      m_hands = std::make_unique<KeyboardHands>(m_stage);
    }
  }

  platform::Text Document() const { return m_folder.filePath("plant.orvc").toStdString(); }

  template <class W>
  W* In(QDialog* dialog, const char* sName) {
    auto* widget = m_stage.Ask([&] { return dialog->findChild<W*>(sName); });
    if (!widget) throw Stopped(platform::Text("The dialog has no ") + sName + ".");
    return widget;
  }
  void Expect(const platform::Text& sWhat, const Stage::Condition& condition) {
    m_stage.WaitFor(sWhat, condition);
  }

  void AddsServers();
  void SetsOptions();
  void MakesAndRemovesCatalogs();
  void RecordSamples();
  void LooksAtATable();
  void WorksOnRows();
  void BuildsTheTablesQuery();
  void KeepsNamedQueries();
  void SavesUnderAName();
  void RemovesAServerAndDisconnects();
  void EndsTheProgram();
  void OpensTheDocumentAgain();
  void FindsEverythingAsItWas();

  void NewQuery(const platform::Text& sName, const platform::Text& sSql);
  void LogsOn(const platform::Text& sServer);
  void TypesFileName(QDialog* dialog, const char* sName = "plant.orvc");
  template <class W>
  W* InGrid(const char* sName) {
    auto* widget = m_stage.Ask([&]() -> W* {
      for (auto* one : m_stage.Window().findChildren<W*>(sName)) {
        if (one->isVisible()) return one;
      }
      return nullptr;
    });
    if (!widget) throw Stopped(platform::Text("The grid has no ") + sName + " in sight.");
    return widget;
  }
  QAbstractItemView* ShowsTheLastMinutes();
  void SortsAndEdits(QAbstractItemView* rows, int iColumn);
  void DeletesARow(QAbstractItemView* rows);
  void FillsFromAQuery(QAbstractItemView* rows, int iColumn);
  void ExportsWhatIsShown(QAbstractItemView* rows);
  void ReadsATrend();
  platform::Text Stored(const platform::Text& sSql);
  void WaitUntilOpened(const platform::Text& sKey);

  QTemporaryDir m_folder;
  Stage m_stage;
  std::unique_ptr<Hands> m_hands;
};

}  // namespace orvane::console
