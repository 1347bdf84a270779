// A table's grid over a time column, with the bar above it, on a server that answers what it is
// told to.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QTimer>

#include "controls/grid/table_editor.h"
#include "controls/grid/table_time.h"
#include "controls/statements/table_query.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/schema_connection.h"
#include "tests/controls/struck_clock.h"

namespace orvane::controls {

inline platform::RecordsetPtr Samples(int nNewest, int nOldest) {
  ado::RecordsetBuilder builder({{"Tag", platform::DataType::WChar},
                                 {"Timestamp", platform::DataType::DBTimeStamp},
                                 {"Value", platform::DataType::Double}});
  for (int n = nNewest; n >= nOldest; --n) {
    builder.AppendRow({"a", platform::Timestamp(std::chrono::seconds(n)), 1.0 * n});
  }
  return builder.Finish();
}

class TableTimeFixture : public GridFixture {
 protected:
  TableTimeFixture() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    m_server.answer = Samples(100, 51);
    m_editor = Bound();
  }
  std::unique_ptr<controls::TableEditor> Bound() {
    auto editor = std::make_unique<controls::TableEditor>(Services());
    editor->Connection(m_cn);
    editor->TableQuery(m_query);
    return editor;
  }
  TimeBar& Bar() { return *static_cast<TimeBar*>(Find<QWidget>("timeBar")); }
  template <class Widget>
  Widget* Find(const char* sName) {
    return WindowOf(*m_editor)->findChild<Widget*>(sName);
  }
  void Pick(const char* sName) {
    auto* ranges = Find<QComboBox>("timeRange");
    ranges->setCurrentIndex(ranges->findText(sName));
    emit ranges->activated(ranges->currentIndex());
  }
  /// What the last statement said behind the table's name.
  platform::Text Sent() const {
    EXPECT_TRUE(m_server.sCommandText.starts_with(kSelect)) << m_server.sCommandText;
    return m_server.sCommandText.substr(kSelect.size());
  }
  /// The next fetch of a grid that follows.
  void FollowOnce() {
    auto* follow = Find<QCheckBox>("follow");
    if (!follow->isChecked()) follow->click();
    const int nExecuted = m_server.nExecuted;
    EndPause();
    ASSERT_EQ(m_server.nExecuted, nExecuted + 1);
    follow->click();
  }
  /// Has the pause between two runs end now; the run behind it is done afterwards.
  void EndPause() {
    auto* pause = Find<QTimer>("pause");
    ASSERT_TRUE(pause->isActive());
    StrikeNow(*pause);
  }

  const platform::Text kSelect = "SELECT *\nFROM \"Machine\"..\"Data\"";
  std::shared_ptr<SchemaConnection> m_cn =
      std::make_shared<SchemaConnection>(SchemaConnection::Columns{
          {"Tag", platform::DataType::WChar}, {"Timestamp", platform::DataType::DBTimeStamp}});
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
  std::unique_ptr<controls::TableEditor> m_editor;
};

}  // namespace orvane::controls
