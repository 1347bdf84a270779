#include "controls/view/row_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QGuiApplication>
#include <QPalette>
#include <QTextDocument>
#include <numeric>

#include "tests/controls/fake_data.h"

namespace orvane::controls {
namespace {

using platform::Value;

const CellFormat kUtc;

TEST(row_model, is_empty_without_a_recordset) {
  const RowModel model;
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_EQ(model.columnCount(), 0);
  EXPECT_TRUE(model.AllRowsFit());
  EXPECT_FALSE(model.headerData(0, Qt::Horizontal).isValid());
}

/// Rows that can be taken out, and nothing else.
class TakingOut final : public RowEditing {
 public:
  bool CanEdit(platform::RowIndex, platform::ColumnIndex) const override { return false; }
  void Edit(platform::RowIndex, platform::ColumnIndex, const Value&) override {}
  void TakeTyped() override {}
  bool OffersNewRow() const override { return false; }
  const std::set<platform::RowIndex>& GoneRows() const override { return gone; }
  QString RemarkOf(platform::RowIndex) const override { return {}; }
  std::set<platform::RowIndex> gone;
};

TEST(row_model, takes_rows_out_one_after_the_other_without_a_look_at_those_before) {
  constexpr int kAll = 100'000;
  constexpr int kTakenOut = 10'000;
  RowModel model;
  TakingOut editing;
  model.Editing(&editing);
  model.Recordset(Plant(kAll), kUtc);
  RowOrder::Numbers rows(kAll);
  std::iota(rows.rbegin(), rows.rend(), 0U);
  RowOrder::Numbers byRow = RowOrder::ByRow(rows, kAll, false);
  model.Order(std::make_shared<const RowOrder>(std::move(rows), std::move(byRow), kAll));
  int nRemoved = 0;
  QObject::connect(&model, &QAbstractItemModel::rowsRemoved, [&] { ++nRemoved; });
  for (platform::RowIndex row = 0; row < kAll; row += kAll / kTakenOut) {
    editing.gone.insert(row);
    model.TakeRowsIn(std::span(&row, 1));
    ASSERT_EQ(model.PlaceOf(row), -1);
  }
  EXPECT_EQ(nRemoved, kTakenOut);
  EXPECT_EQ(model.Places(), kAll - kTakenOut);
  EXPECT_EQ(model.RecordRow(0), kAll - 1);
  EXPECT_EQ(model.RecordRow(9), kAll - 11) << "the one before has gone";
  EXPECT_EQ(model.PlaceOf(1), model.Places() - 1);
  model.Editing(nullptr);
}

TEST(row_model, keeps_the_rules_of_item_models) {
  RowModel model;
  const QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  model.Recordset(Plant(5), kUtc);
  model.Recordset(Plant(0), kUtc);
  model.Recordset(nullptr, kUtc);
}

TEST(row_model, shows_names_numbers_and_cells) {
  RowModel model;
  model.Recordset(Plant(1'000'000), kUtc);
  EXPECT_EQ(model.rowCount(), 1'000'000);
  EXPECT_EQ(model.columnCount(), 4);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Name");
  EXPECT_EQ(model.headerData(999'999, Qt::Vertical).toInt(), 1'000'000);
  EXPECT_EQ(model.index(999'999, 1).data().toString(), "row 999999");
  EXPECT_EQ(model.index(0, 3).data().toString(), "2023-11-14 22:13:20");
}

TEST(row_model, asks_for_no_cell_before_one_is_looked_at_and_then_for_that_one) {
  RowModel model;
  const auto rs = Plant(1'000'000);
  model.Recordset(rs, kUtc);
  EXPECT_EQ(rs->TakeCellsAsked(), 0U);
  EXPECT_TRUE(model.index(500'000, 0).data().isValid());
  EXPECT_EQ(rs->TakeCellsAsked(), 1U);
  EXPECT_EQ(rs->TakeRowsAsked(), (std::set<platform::RowIndex>{500'000}));
}

TEST(row_model, null_is_told_from_the_text_of_that_name_and_from_the_empty_text) {
  RowModel model;
  const auto rs = std::make_shared<FakeRecordset>(3, [](auto row, auto) -> Value {
    if (row == 0) return {};
    return row == 1 ? Value("NULL") : Value("");
  });
  rs->Column("a", platform::DataType::WChar);
  model.Recordset(rs, kUtc);
  const auto null = model.index(0, 0);
  const auto word = model.index(1, 0);
  const auto empty = model.index(2, 0);
  EXPECT_EQ(null.data().toString(), "NULL");
  EXPECT_EQ(word.data().toString(), "NULL");
  EXPECT_EQ(empty.data().toString(), "");
  EXPECT_TRUE(null.data(Qt::FontRole).value<QFont>().italic());
  EXPECT_FALSE(word.data(Qt::FontRole).isValid());
  EXPECT_FALSE(empty.data(Qt::FontRole).isValid());
  EXPECT_EQ(null.data(Qt::ForegroundRole).value<QBrush>(),
            QGuiApplication::palette().placeholderText());
  EXPECT_FALSE(word.data(Qt::ForegroundRole).isValid());
  EXPECT_EQ(null.data(Qt::AccessibleDescriptionRole).toString(), "a, row 1, no value");
  EXPECT_EQ(word.data(Qt::AccessibleDescriptionRole).toString(), "a, row 2");
  EXPECT_FALSE(null.data(Qt::EditRole).isValid());
  EXPECT_TRUE(empty.data(Qt::EditRole).isValid());
}

TEST(row_model, an_editor_is_offered_the_value_in_its_type) {
  RowModel model;
  const platform::Bytes bytes{std::byte{1}, std::byte{2}};
  const std::vector<Value> values{
      Value(true), Value(std::int32_t{-3}), Value(std::int64_t{1} << 40),
      Value(0.1),  Value("two\nlines"),     Value(bytes)};
  const auto rs = std::make_shared<FakeRecordset>(
      1, [&](auto, auto column) { return values[static_cast<std::size_t>(column)]; });
  for (std::size_t n = 0; n < values.size(); ++n) rs->Column("c", platform::DataType::Empty);
  model.Recordset(rs, kUtc);
  const auto edited = [&](int nColumn) { return model.index(0, nColumn).data(Qt::EditRole); };
  EXPECT_EQ(edited(0), QVariant(true));
  EXPECT_EQ(edited(1), QVariant(-3));
  EXPECT_EQ(edited(2), QVariant(qlonglong{1} << 40));
  EXPECT_EQ(edited(3), QVariant(0.1));
  EXPECT_EQ(edited(4), QVariant("two\nlines"));
  EXPECT_EQ(edited(5), QVariant(QByteArray("\1\2")));
  EXPECT_EQ(model.ValueAt(0, 3), Value(0.1));
}

TEST(row_model, an_editor_is_offered_the_whole_text_where_the_toolkit_has_no_type_for_it) {
  RowModel model;
  using namespace std::chrono_literals;
  const std::vector<Value> values{
      Value(platform::Decimal{"0.10"}),
      Value(platform::Timestamp(1'700'000'000'123'456us)),
      Value(platform::Date(std::chrono::days(19'000))),
      Value(platform::TimeOfDay(1h + 1us)),
      Value(platform::Guid{{1, 2, 3}}),
      Value("K\xE4lte"),
  };
  const auto rs = std::make_shared<FakeRecordset>(
      1, [&](auto, auto column) { return values[static_cast<std::size_t>(column)]; });
  for (std::size_t n = 0; n < values.size(); ++n) rs->Column("c", platform::DataType::Empty);
  model.Recordset(rs, kUtc);
  for (std::size_t n = 0; n < values.size(); ++n) {
    const QVariant offered = model.index(0, static_cast<int>(n)).data(Qt::EditRole);
    // A type of this library would outlive it in the toolkit.
    ASSERT_EQ(offered.userType(), QMetaType::QString) << n;
    EXPECT_EQ(offered.toString(), model.Format().Whole(values[n])) << n;
  }
}

TEST(row_model, cells_can_be_selected_and_not_edited) {
  RowModel model;
  model.Recordset(Plant(1), kUtc);
  const auto flags = model.flags(model.index(0, 0));
  EXPECT_TRUE(flags.testFlag(Qt::ItemIsSelectable));
  EXPECT_TRUE(flags.testFlag(Qt::ItemIsEnabled));
  EXPECT_FALSE(flags.testFlag(Qt::ItemIsEditable));
  EXPECT_FALSE(model.Edit(model.index(0, 0), Value(1)));
}

TEST(row_model, names_stand_on_the_side_of_their_values) {
  RowModel model;
  model.Recordset(Plant(1), kUtc);
  const auto side = [&](int nColumn) {
    return model.headerData(nColumn, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
  };
  EXPECT_EQ(side(0), static_cast<int>(Qt::AlignRight | Qt::AlignVCenter));
  EXPECT_EQ(side(1), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter));
  EXPECT_EQ(side(2), static_cast<int>(Qt::AlignCenter));
  EXPECT_EQ(model.index(0, 0).data(Qt::TextAlignmentRole).toInt(), side(0));
}

TEST(row_model, a_column_tells_its_type_and_zone) {
  RowModel model;
  model.Recordset(Plant(1), kUtc);
  const auto tip = [&](int nColumn) {
    QTextDocument document;
    document.setHtml(model.headerData(nColumn, Qt::Horizontal, Qt::ToolTipRole).toString());
    return document.toPlainText().replace(QChar::LineSeparator, u'\n').toStdString();
  };
  EXPECT_EQ(tip(0), "Number\nInteger (64 bits), never null");
  EXPECT_EQ(tip(1), "Name\nText");
  EXPECT_EQ(tip(3), "Timestamp\nDate and time\nShown in the time zone UTC");
}

TEST(row_model, a_column_of_a_long_name_in_several_lines_has_one_line_and_a_tip) {
  RowModel model;
  const auto rs = std::make_shared<FakeRecordset>(0, [](auto, auto) { return Value(); });
  rs->Column("a\tb\r\nc\x01", platform::DataType::WChar)
      .Column(platform::Text(5'000, 'n'), platform::DataType::WChar);
  model.Recordset(rs, kUtc);
  const auto shown = [&](int nColumn, int nRole) {
    return model.headerData(nColumn, Qt::Horizontal, nRole).toString().toStdString();
  };
  EXPECT_EQ(shown(0, Qt::DisplayRole), "a\u21E5b\u21B5c\uFFFD");
  EXPECT_EQ(shown(1, Qt::DisplayRole), std::string(1'000, 'n') + "\u2026");
  EXPECT_NE(shown(1, Qt::ToolTipRole).find("The first 1,500 of 5,000 characters."),
            std::string::npos);
}

TEST(row_model, rows_beyond_what_a_window_can_measure_are_not_offered) {
  RowModel model;
  model.Recordset(Plant(RowModel::kMaxRows + 1), kUtc);
  EXPECT_EQ(model.rowCount(), RowModel::kMaxRows);
  EXPECT_FALSE(model.AllRowsFit());
  model.Recordset(Plant(RowModel::kMaxRows), kUtc);
  EXPECT_TRUE(model.AllRowsFit());
}

}  // namespace
}  // namespace orvane::controls
