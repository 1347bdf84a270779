// Finding a text among rows, held against looking into each cell in turn.
#include "controls/view/row_finder.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <random>

#include "ado/recordset_builder.h"
#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::RowIndex;

constexpr RowIndex kRows = 20'000;

class row_finder : public testing::Test {
 protected:
  row_finder() {
    ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                   {"Value", DataType::Double},
                                   {"Mixed", DataType::Empty},
                                   {"Nothing", DataType::WChar}});
    for (RowIndex row = 0; row < kRows; ++row) {
      const platform::Text sTag = "plant.sensor" + std::to_string(row % 9'000);
      const bool bText = row % 3 == 0;
      builder.AppendRow({Value(sTag), Value(0.5 * static_cast<double>(row)),
                         bText ? Value("Text " + std::to_string(row)) : Value(row), Value()});
    }
    m_rs = builder.Finish();
    m_model.Recordset(m_rs, kUtcZone);
  }
  struct Outcome {
    std::optional<CellPlace> cell;
    bool bWrapped = false;
    friend bool operator==(const Outcome&, const Outcome&) = default;
  };
  Outcome Found(const QString& sText, CellPlace from, bool bForward) {
    Outcome outcome;
    RowFinder finder(m_model, nullptr);
    finder.Find(TextSought(sText), m_columns, from, bForward,
                [&](std::optional<CellPlace> cell, bool bWrapped) {
                  outcome = {cell, bWrapped};
                });
    while (finder.Busy()) QCoreApplication::processEvents();
    return outcome;
  }
  /// Each cell in turn.
  Outcome Expected(const QString& sText, CellPlace from, bool bForward) {
    const auto width = static_cast<std::int64_t>(m_columns.size());
    const std::int64_t cells = width * m_model.rowCount();
    std::int64_t cell =
        from.nRow * width + (std::ranges::find(m_columns, from.nColumn) - m_columns.begin());
    bool bWrapped = false;
    for (std::int64_t n = 0; n < cells; ++n) {
      cell += bForward ? 1 : -1;
      if (cell < 0 || cell >= cells) {
        cell = bForward ? 0 : cells - 1;
        bWrapped = true;
      }
      const CellPlace place{static_cast<int>(cell / width),
                            m_columns[static_cast<std::size_t>(cell % width)]};
      const Value vtValue = m_model.ValueAt(place.nRow, place.nColumn);
      if (!vtValue.IsNull() && kUtcZone.Whole(vtValue).contains(sText, Qt::CaseInsensitive)) {
        return {place, bWrapped};
      }
    }
    return {std::nullopt, bWrapped};
  }
  void ExpectSame(const std::vector<QString>& texts, int nTimes) {
    std::uniform_int_distribution<int> row(0, m_model.rowCount() - 1);
    std::uniform_int_distribution<std::size_t> column(0, m_columns.size() - 1);
    for (const QString& sText : texts) {
      for (int n = 0; n < nTimes; ++n) {
        const CellPlace from{row(m_random), m_columns[column(m_random)]};
        for (const bool bForward : {true, false}) {
          EXPECT_EQ(Found(sText, from, bForward), Expected(sText, from, bForward))
              << sText.toStdString() << " from " << from.nRow << ", " << from.nColumn << bForward;
        }
      }
    }
  }

  platform::RecordsetPtr m_rs;
  RowModel m_model;
  std::vector<int> m_columns{0, 1, 2, 3};
  std::mt19937 m_random{20261122};
};

TEST_F(row_finder, finds_what_each_cell_in_turn_would_give) {
  ExpectSame(
      {"SENSOR8999", "t 1998", "9999.5", "19997", "nowhere", "plant", "text 0", "e+", "\u00e4"}, 1);
}

TEST_F(row_finder, finds_it_in_other_orders_and_columns_too) {
  RowOrder::Numbers rows;
  for (RowIndex row = 0; row < kRows; row += 2) rows.push_back(static_cast<RowOrder::Number>(row));
  std::ranges::shuffle(rows, m_random);
  RowOrder::Numbers byRow = RowOrder::ByRow(rows, kRows, false);
  m_model.Order(std::make_shared<const RowOrder>(std::move(rows), std::move(byRow), kRows));
  m_columns = {2, 0};
  ExpectSame({"sensor8998", "text 1998", "19996", "nowhere"}, 2);
}

TEST_F(row_finder, finds_what_was_edited_and_not_what_it_was_before) {
  m_rs->ValueAt(12'345, 0, Value("edited here"));
  m_rs->ValueAt(8'999, 0, Value("another"));
  m_rs->ValueAt(17'999, 0, Value("another"));
  EXPECT_EQ(Found("EDITED", {0, 0}, true).cell, (CellPlace{12'345, 0}));
  EXPECT_EQ(Found("sensor8999", {0, 0}, true).cell, std::nullopt);
  const std::vector<Value> stored{Value("stored there"), Value(1.0), Value(), Value()};
  m_rs->Accept(12'345, stored);
  EXPECT_EQ(Found("stored", {15'000, 0}, true), (Outcome{CellPlace{12'345, 0}, true}));
  ExpectSame({"another", "stored"}, 2);
}

TEST(row_finder_slices, end_where_few_cells_have_many_bytes) {
  const platform::Text sLarge(std::size_t{1} << 20, 'x');
  const auto rs = std::make_shared<FakeRecordset>(60, [&](auto, auto) { return Value(sLarge); });
  rs->Column("Note", DataType::WChar);
  RowModel model;
  model.Recordset(rs, kUtcZone);
  RowFinder finder(model, nullptr);
  bool bFound = false;
  bool bDone = false;
  finder.Find(TextSought(QStringLiteral("nowhere")), {0}, {0, 0}, true, [&](auto cell, bool) {
    bFound = cell.has_value();
    bDone = true;
  });
  EXPECT_LE(rs->TakeCellsAsked(), RowFinder::kMostBytesInSlice / sLarge.size());
  EXPECT_TRUE(finder.Busy());
  while (finder.Busy()) QCoreApplication::processEvents();
  EXPECT_TRUE(bDone);
  EXPECT_FALSE(bFound);
  EXPECT_EQ(rs->TakeRowsAsked().size(), 60U);
}

TEST(text_sought, is_found_wherever_it_stands_in_a_text) {
  std::mt19937 random(7);
  const std::string sLetters = "aAbB@`[{.1";
  const auto text = [&](std::size_t size) {
    std::string sText;
    while (sText.size() < size) sText += sLetters[random() % sLetters.size()];
    return sText;
  };
  int nFound = 0;
  for (int n = 0; n < 5'000; ++n) {
    const std::string sText = text(random() % 100);
    const std::string sSought = text(1 + random() % 4);
    const bool bExpected = QString::fromStdString(sText).contains(QString::fromStdString(sSought),
                                                                  Qt::CaseInsensitive);
    nFound += bExpected ? 1 : 0;
    ASSERT_EQ(TextSought(QString::fromStdString(sSought)).IsIn(Value(sText), kUtcZone), bExpected)
        << sSought << " in " << sText;
  }
  EXPECT_GT(nFound, 500);
  EXPECT_LT(nFound, 4'500);
}

TEST(text_sought, passes_over_runs_that_cannot_have_it) {
  using platform::ValueKind;
  const TextSought word("Sensor");
  const TextSought digits("12.5");
  EXPECT_FALSE(word.MayBeIn({0, 9, ValueKind::Double, {}}));
  EXPECT_TRUE(digits.MayBeIn({0, 9, ValueKind::Double, {}}));
  EXPECT_FALSE(digits.MayBeIn({0, 9, ValueKind::Null, {}}));
  EXPECT_TRUE(word.MayBeIn({0, 9, std::nullopt, {}})) << "of kinds that differ nothing is known";
  EXPECT_TRUE(word.MayBeIn({0, 9, ValueKind::Text, "plant.SENSOR1plant.line"}));
  EXPECT_FALSE(word.MayBeIn({0, 9, ValueKind::Text, "plant.line"}));
  EXPECT_TRUE(TextSought(QStringLiteral("inf")).MayBeIn({0, 9, ValueKind::Double, {}}));
  EXPECT_TRUE(TextSought(QStringLiteral("\u00e4")).MayBeIn({0, 9, ValueKind::Text, "a"}))
      << "what is not ASCII is looked for cell by cell";
}

}  // namespace
}  // namespace orvane::controls
