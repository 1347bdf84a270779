// A table query with the members of the real one and a simple SQL text.
#pragma once

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/grids/table_query.h"

namespace orvane::fakes {

class FakeTableQuery : public platform::TableQuery {
 public:
  using Text = platform::Text;
  using Long = platform::Long;

  FakeTableQuery() : m_columns(*this) {}

  Text ProgId() const override { return platform::kTableQueryProgId; }
  Text WriteState() const override {
    std::ostringstream state;
    const auto put = [&](const Text& sText) { state << sText.size() << ':' << sText; };
    put(m_sCatalog);
    put(m_sTable);
    put(m_sFilter);
    put(m_sort ? m_sort->sColumn : "");
    put(m_sort ? (m_sort->bAscending ? "asc" : "desc") : "none");
    put(std::to_string(m_lMaxRows));
    put(std::to_string(m_lQueryTimeout));
    for (const Text& sColumn : m_columns.names) put(sColumn);
    return state.str();
  }
  void ReadState(const Text& sState) override {
    std::vector<Text> parts;
    for (std::size_t i = 0; i < sState.size();) {
      const std::size_t nColon = sState.find(':', i);
      if (nColon == Text::npos) throw platform::Failure(13, "Not the state of a table query.");
      const std::size_t nLength = std::stoul(sState.substr(i, nColon - i));
      parts.push_back(sState.substr(nColon + 1, nLength));
      i = nColon + 1 + nLength;
    }
    if (parts.size() < 7) throw platform::Failure(13, "Not the state of a table query.");
    m_sCatalog = parts[0];
    m_sTable = parts[1];
    m_sFilter = parts[2];
    m_sort.reset();
    if (parts[4] != "none") m_sort = platform::SortCriterion{parts[3], parts[4] == "asc"};
    m_lMaxRows = std::stoi(parts[5]);
    m_lQueryTimeout = std::stoi(parts[6]);
    m_columns.names.assign(parts.begin() + 7, parts.end());
  }

  Text Catalog() const override { return m_sCatalog; }
  void Catalog(const Text& sCatalog) override { Set(m_sCatalog, sCatalog); }
  Text Table() const override { return m_sTable; }
  void Table(const Text& sTable) override { Set(m_sTable, sTable); }
  platform::ColumnList& Columns() override { return m_columns; }
  Text FilterCondition() const override { return m_sFilter; }
  void FilterCondition(const Text& sFilter) override { Set(m_sFilter, sFilter); }
  void FilterIsDefault(platform::Boolean bDefault) override { bFilterIsDefault = bDefault; }
  std::optional<platform::SortCriterion> SortCriterion() const override { return m_sort; }
  void SortCriterion(const std::optional<platform::SortCriterion>& sort) override {
    Set(m_sort, sort);
  }
  Long MaxRows() const override { return m_lMaxRows; }
  void MaxRows(Long lMaxRows) override { Set(m_lMaxRows, lMaxRows); }
  Long QueryTimeout() const override { return m_lQueryTimeout; }
  void QueryTimeout(Long lQueryTimeout) override { Set(m_lQueryTimeout, lQueryTimeout); }
  Text SqlText() const override {
    return "SELECT * FROM " + m_sCatalog + ".." + m_sTable +
           (m_sFilter.empty() ? "" : " WHERE " + m_sFilter);
  }
  platform::Subscription OnChange(std::function<void()> handler) override {
    return m_change.Connect(std::move(handler));
  }

  platform::Boolean bFilterIsDefault = false;

 private:
  class ColumnNames : public platform::ColumnList {
   public:
    explicit ColumnNames(FakeTableQuery& owner) : m_owner(owner) {}
    Long Count() const override { return static_cast<Long>(names.size()); }
    Text Item(Long lIndex) const override { return names[Offset(lIndex)]; }
    void Add(const Text& sColumn) override {
      if (std::find(names.begin(), names.end(), sColumn) != names.end()) {
        throw platform::Failure(457, "The column is already in the list.");
      }
      names.push_back(sColumn);
      m_owner.m_change.Raise();
    }
    void Remove(Long lIndex) override {
      names.erase(names.begin() + static_cast<std::ptrdiff_t>(Offset(lIndex)));
      m_owner.m_change.Raise();
    }
    void Clear() override {
      names.clear();
      m_owner.m_change.Raise();
    }
    std::vector<Text> names;

   private:
    std::size_t Offset(Long lIndex) const {
      if (lIndex < 1 || lIndex > Count()) throw platform::Failure(9, "No such column.");
      return static_cast<std::size_t>(lIndex) - 1;
    }
    FakeTableQuery& m_owner;
  };

  template <class T>
  void Set(T& member, const T& value) {
    member = value;
    m_change.Raise();
  }

  Text m_sCatalog;
  Text m_sTable;
  Text m_sFilter;
  std::optional<platform::SortCriterion> m_sort;
  Long m_lMaxRows = 0;
  Long m_lQueryTimeout = 0;
  platform::Signal<> m_change;
  ColumnNames m_columns;
};

}  // namespace orvane::fakes
