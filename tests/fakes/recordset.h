// A recordset over rows given as values; single cells can be told to fail.
#pragma once

#include <algorithm>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "platform/ado/recordset.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::fakes {

struct FakeColumn {
  platform::Text sName;
  platform::DataType type = platform::DataType::WChar;
};

class FakeRecordset : public platform::Recordset {
 public:
  using platform::Recordset::ValueAt;

  using Row = std::vector<platform::Value>;

  FakeRecordset(std::vector<FakeColumn> columns, std::vector<Row> rows)
      : m_rows(std::move(rows)), m_fields(*this, std::move(columns)) {}

  platform::Fields& Fields() override { return m_fields; }
  platform::Boolean Eof() const override { return m_position >= RecordCount(); }
  platform::Boolean Bof() const override { return RecordCount() == 0; }
  void MoveNext() override {
    if (Eof()) throw platform::Failure(3021, "There is no current row.");
    ++m_position;
  }
  void MoveFirst() override {
    ++nMoveFirst;
    m_position = 0;
  }
  void MoveLast() override { m_position = std::max<platform::RowIndex>(RecordCount() - 1, 0); }
  platform::RowIndex Position() const override { return m_position; }
  void Position(platform::RowIndex row) override { m_position = row; }
  platform::RowIndex RecordCount() const override {
    return static_cast<platform::RowIndex>(m_rows.size());
  }
  platform::ColumnIndex FieldCount() const override { return m_fields.Count(); }
  const platform::Field& FieldAt(platform::ColumnIndex column) const override {
    return m_fields.At(column);
  }
  platform::Value ValueAt(platform::RowIndex row, platform::ColumnIndex column) const override {
    if (failing.contains({row, column})) throw platform::Failure(3021, "The cell cannot be read.");
    return m_rows.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
  }
  platform::Boolean Truncated() const override { return false; }
  std::chrono::microseconds Elapsed() const override { return {}; }

  std::set<std::pair<platform::RowIndex, platform::ColumnIndex>> failing;
  int nMoveFirst = 0;

 private:
  class FakeField : public platform::Field {
   public:
    FakeField(FakeRecordset& owner, FakeColumn column, platform::ColumnIndex index)
        : m_owner(owner), m_column(std::move(column)), m_index(index) {}
    const platform::Text& Name() const override { return m_column.sName; }
    platform::DataType Type() const override { return m_column.type; }
    platform::Boolean Nullable() const override { return true; }
    platform::Value Value() const override {
      if (m_owner.Eof()) throw platform::Failure(3021, "There is no current row.");
      return m_owner.ValueAt(m_owner.m_position, m_index);
    }

   private:
    FakeRecordset& m_owner;
    FakeColumn m_column;
    platform::ColumnIndex m_index;
  };

  class FakeFields : public platform::Fields {
   public:
    FakeFields(FakeRecordset& owner, std::vector<FakeColumn> columns) {
      for (FakeColumn& column : columns) {
        m_fields.push_back(std::make_unique<FakeField>(owner, std::move(column), Count()));
      }
    }
    platform::Long Count() const override { return static_cast<platform::Long>(m_fields.size()); }
    platform::Field& Item(const platform::Value& vtIndexName) override {
      for (const auto& field : m_fields) {
        if (vtIndexName == platform::Value(field->Name())) return *field;
      }
      throw platform::Failure(platform::failure::kItemNotFound,
                              "There is no field " + platform::ToText(vtIndexName) + ".");
    }
    const platform::Field& At(platform::ColumnIndex column) const {
      return *m_fields.at(static_cast<std::size_t>(column));
    }

   private:
    std::vector<std::unique_ptr<FakeField>> m_fields;
  };

  std::vector<Row> m_rows;
  FakeFields m_fields;
  platform::RowIndex m_position = 0;
};

}  // namespace orvane::fakes
