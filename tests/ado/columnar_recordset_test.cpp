#include "ado/columnar_recordset.h"

#include <gtest/gtest.h>

#include "ado/recordset_builder.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::Value;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

platform::RecordsetPtr ThreeRows() {
  RecordsetBuilder builder({{"Name"}, {"Größe"}});
  builder.AppendRow({"a", 1});
  builder.AppendRow({"b", 2});
  builder.AppendRow({"c", 3});
  return builder.Finish();
}

platform::RecordsetPtr NoRows() {
  return RecordsetBuilder({{"Name"}}).Finish();
}

TEST(ColumnarRecordset, starts_at_its_first_row) {
  const auto rs = ThreeRows();
  EXPECT_FALSE(rs->Eof());
  EXPECT_FALSE(rs->Bof());
  EXPECT_EQ(rs->Position(), 0);
  EXPECT_TRUE(rs->Fields().Item("Name").Value() == Value("a"));
}

TEST(ColumnarRecordset, is_read_row_by_row_to_its_end) {
  const auto rs = ThreeRows();
  std::string sRead;
  for (; !rs->Eof(); rs->MoveNext()) sRead += *rs->Fields().Item(0).Value().As<platform::Text>();
  EXPECT_EQ(sRead, "abc");
  EXPECT_EQ(rs->Position(), 3);
  rs->MoveFirst();
  EXPECT_TRUE(rs->Fields().Item(0).Value() == Value("a"));
  rs->MoveLast();
  EXPECT_TRUE(rs->Fields().Item(0).Value() == Value("c"));
  EXPECT_FALSE(rs->Eof());
}

TEST(ColumnarRecordset, a_field_kept_by_its_reader_follows_the_current_row) {
  const auto rs = ThreeRows();
  const platform::Field& field = rs->Fields().Item("Größe");
  rs->MoveNext();
  EXPECT_TRUE(field.Value() == Value(2));
}

TEST(ColumnarRecordset, behind_the_last_row_has_no_value_and_no_next_row) {
  const auto rs = ThreeRows();
  rs->Position(3);
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(
      FailureOf([&] { rs->MoveNext(); }),
      (Told{failure::kNoCurrentRow,
            "There is no next row: the recordset is behind its last row; move to its first one."}));
  EXPECT_EQ(FailureOf([&] { rs->Fields().Item("Name").Value(); }),
            (Told{failure::kNoCurrentRow,
                  "The field \"Name\" has no value here: the recordset is behind its last row; "
                  "move to its first one."}));
}

TEST(ColumnarRecordset, without_rows_is_at_both_ends) {
  const auto rs = NoRows();
  EXPECT_TRUE(rs->Eof());
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(rs->RecordCount(), 0);
  rs->MoveFirst();
  rs->MoveLast();
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(FailureOf([&] { rs->MoveNext(); }).lNumber, failure::kNoCurrentRow);
  EXPECT_EQ(FailureOf([&] { rs->Fields().Item(0).Value(); }).lNumber, failure::kNoCurrentRow);
}

TEST(ColumnarRecordset, goes_to_any_position_up_to_the_end) {
  const auto rs = ThreeRows();
  rs->Position(2);
  EXPECT_TRUE(rs->Fields().Item(0).Value() == Value("c"));
  EXPECT_EQ(
      FailureOf([&] { rs->Position(4); }),
      (Told{failure::kOutOfRange, "The recordset has no position 4; choose one from 0 to 3."}));
  EXPECT_EQ(FailureOf([&] { rs->Position(-1); }).lNumber, failure::kOutOfRange);
  EXPECT_EQ(rs->Position(), 2);
}

TEST(ColumnarRecordset, finds_a_field_by_name_without_regard_to_case) {
  const auto rs = ThreeRows();
  EXPECT_EQ(rs->Fields().Item("nAME").Name(), "Name");
  EXPECT_EQ(rs->Fields().Item("GRÖSSE").Name(), "Größe");
  EXPECT_EQ(rs->Fields().Count(), 2);
}

TEST(ColumnarRecordset, finds_a_field_by_number) {
  const auto rs = ThreeRows();
  EXPECT_EQ(rs->Fields().Item(1).Name(), "Größe");
  EXPECT_EQ(rs->Fields().Item(std::int64_t{1}).Name(), "Größe");
}

TEST(ColumnarRecordset, tells_which_field_it_lacks) {
  const auto rs = ThreeRows();
  EXPECT_EQ(FailureOf([&] { rs->Fields().Item("Identity"); }),
            (Told{failure::kItemNotFound,
                  "The recordset has no field \"Identity\"; name one of its fields."}));
  const Told number{failure::kItemNotFound,
                    "The recordset has no field number 2: it has 2 of them, counted from 0."};
  EXPECT_EQ(FailureOf([&] { rs->Fields().Item(2); }), number);
  EXPECT_EQ(FailureOf([&] { (void)rs->FieldAt(2); }), number);
  EXPECT_EQ(FailureOf([&] { (void)rs->ValueAt(0, 2); }), number);
  EXPECT_EQ(FailureOf([&] { rs->Fields().Item(-1); }).lNumber, failure::kItemNotFound);
}

TEST(ColumnarRecordset, of_fields_with_one_name_the_name_means_the_first) {
  RecordsetBuilder builder({{"n"}, {"N"}});
  builder.AppendRow({1, 2});
  const auto rs = builder.Finish();
  EXPECT_TRUE(rs->Fields().Item("N").Value() == Value(1));
  EXPECT_TRUE(rs->Fields().Item(1).Value() == Value(2));
}

TEST(ColumnarRecordset, gives_any_cell_without_moving_its_current_row) {
  const auto rs = ThreeRows();
  rs->Position(1);
  EXPECT_TRUE(rs->ValueAt(2, 0) == Value("c"));
  EXPECT_EQ(rs->Position(), 1);
  EXPECT_EQ(FailureOf([&] { (void)rs->ValueAt(3, 0); }),
            (Told{failure::kNoCurrentRow,
                  "The recordset has no row number 3: it has 3 rows, counted from 0."}));
  EXPECT_EQ(FailureOf([&] { (void)rs->ValueAt(-1, 0); }).lNumber, failure::kNoCurrentRow);
}

TEST(ColumnarRecordset, reaches_each_of_a_million_rows_by_number) {
  RecordsetBuilder builder({{"Tag"}, {"Time"}, {"Value"}, {"Status"}});
  constexpr platform::RowIndex kRows = 1'000'000;
  for (platform::RowIndex row = 0; row < kRows; ++row) {
    builder.AppendRow({row % 2 == 0 ? "pump" : "valve",
                       platform::Timestamp(std::chrono::microseconds(row)),
                       static_cast<double>(row) / 4, -row});
  }
  const auto rs = builder.Finish();
  ASSERT_EQ(rs->RecordCount(), kRows);
  for (platform::RowIndex row = kRows - 1; row >= 0; row -= 997) {
    ASSERT_TRUE(rs->ValueAt(row, 0) == Value(row % 2 == 0 ? "pump" : "valve"));
    ASSERT_TRUE(rs->ValueAt(row, 1) == Value(platform::Timestamp(std::chrono::microseconds(row))));
    ASSERT_TRUE(rs->ValueAt(row, 2) == Value(static_cast<double>(row) / 4));
    ASSERT_TRUE(rs->ValueAt(row, 3) == Value(-row));
  }
  rs->Position(kRows - 1);
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
}

}  // namespace
}  // namespace orvane::ado
