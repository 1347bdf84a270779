// Servers, options and catalogs.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <chrono>

#include "tests/console/whole_job/whole_job.h"
#include "tests/console/window/panes.h"

namespace orvane::console {

using platform::Text;

namespace {

constexpr int kSamplesBefore = 120;
constexpr int kSamplesToCome = 360;
constexpr int kPatienceMilliseconds = 60'000;

}  // namespace

void WholeJobTest::LogsOn(const Text& sServer) {
  auto* logon = m_stage.WaitForDialog("logonDialog");
  auto* cmbServer = In<QComboBox>(logon, "m_cmbServer");
  if (m_stage.Ask([&] { return cmbServer->isEnabled(); })) {
    m_hands->Enter(cmbServer, sServer);
  } else {
    EXPECT_EQ(m_stage.Ask([&] { return cmbServer->currentText(); }).toStdString(), sServer);
  }
  m_hands->PressIn(logon, "m_btnOk");
}

void WholeJobTest::WaitUntilOpened(const Text& sKey) {
  Expect(sKey + " is open", [&] {
    const auto item = m_stage.Item(sKey);
    return item && item->State() == NodeState::Loaded && m_stage.IsIdle() &&
           (item->Children().empty() || ScopeOf(m_stage.Window()).isExpanded(m_stage.Index(sKey)));
  });
}

void WholeJobTest::AddsServers() {
  for (const char* sServer : {"localhost", "annex"}) {
    m_hands->Command("", "m_mnuServersConnect");
    LogsOn(sServer);
    Expect("the new server is in the tree", [&] {
      const auto item = m_stage.Item(sServer);
      return item && m_stage.Window().Session().Selected() == item && m_stage.IsIdle();
    });
  }
  // Nothing comes of a logon that was given up, but a sentence.
  m_hands->Command("", "m_mnuServersConnect");
  m_hands->PressIn(m_stage.WaitForDialog("logonDialog"), "m_btnCancel");
  m_hands->Answer("Error", "The logon was cancelled.", "OK");
  m_stage.WaitUntilIdle();
  EXPECT_EQ(m_stage.Ask([&] { return m_stage.Item("")->Children().size(); }), 2u);
}

void WholeJobTest::SetsOptions() {
  m_hands->Command("", "m_mnuOptions");
  auto* options = m_stage.WaitForDialog("Options");
  // As the dialog says it, with nothing of the program's added.
  EXPECT_EQ(m_stage.Input().Title(m_stage.Ask([&] { return options->winId(); })), "Options");
  auto* maxRows = In<QLineEdit>(options, "m_txtMaxRows");
  m_stage.Input().ListenForBells();
  m_hands->Enter(maxRows, "100");
  m_stage.Input().Type('x');
  EXPECT_TRUE(m_stage.Input().WaitForBell(kPatienceMilliseconds)) << "a letter is refused aloud";
  Expect("the letter is gone", [=] { return maxRows->text() == "100"; });
  m_hands->Enter(In<QWidget>(options, "m_txtTimeout"), "30");
  m_hands->Enter(In<QWidget>(options, "m_txtDefStartTime"), "*-2h");
  m_hands->Enter(In<QWidget>(options, "m_txtDefEndTime"), "*");
  m_hands->PressIn(options, "m_btnOK");
  m_stage.WaitUntilIdle();
  EXPECT_FALSE(m_stage.Input().WaitForBell(0)) << "what is accepted is accepted in silence";
}

void WholeJobTest::MakesAndRemovesCatalogs() {
  m_hands->Expand("localhost");
  WaitUntilOpened("localhost");
  m_hands->Expand("localhost.Catalogs");
  WaitUntilOpened("localhost.Catalogs");
  for (const char* sName : {"Scratch", "Boiler"}) {
    m_hands->Command("localhost.Catalogs", "m_mnuAddCatalog");
    auto* dialog = m_stage.WaitForDialog("Add Catalog");
    m_hands->Enter(In<QWidget>(dialog, "m_txtName"), sName);
    m_hands->Enter(In<QWidget>(dialog, "m_txtSize"), "2048");
    m_hands->PressIn(dialog, "m_btnOk");
    Expect("the catalog is in the tree",
           [&] { return m_stage.Item(Text("localhost.Catalogs.") + sName) && m_stage.IsIdle(); });
  }
  for (const char* sAnswer : {"&No", "&Yes"}) {
    EXPECT_TRUE(m_stage.Ask([&] { return m_stage.Item("localhost.Catalogs.Scratch") != nullptr; }));
    m_hands->Command("localhost.Catalogs.Scratch", "m_mnuCatalogRemove");
    m_hands->Answer("Confirm Catalog Removal",
                    "Are you sure you want to remove the \"Scratch\" catalog?", sAnswer);
    m_stage.WaitUntilIdle();
  }
  EXPECT_FALSE(m_stage.Ask([&] { return m_stage.Item("localhost.Catalogs.Scratch") != nullptr; }));
}

/// Two tags with samples of the last minutes and the coming hour, so that however long the job
/// takes, there are some of the last ten minutes.
void WholeJobTest::RecordSamples() {
  using namespace std::chrono;
  Text sSql = "INSERT INTO Data (Tag, Timestamp, Value) VALUES ('pressure', 0, 4.5)";
  const auto llNow =
      duration_cast<microseconds>(system_clock::now().time_since_epoch()).count() - 1'000'000;
  for (int i = -kSamplesBefore; i < kSamplesToCome; ++i) {
    const Text sTime = std::to_string(llNow + i * 10'000'000LL);
    sSql += ", ('flow', " + sTime + ", " + std::to_string((i + kSamplesBefore) % 7) + ".5)";
    if (i % 3 == 0) sSql += ", ('pressure', " + sTime + ", 4.25)";
  }
  WriteToCatalog("localhost", "Boiler", sSql);
}

}  // namespace orvane::console
