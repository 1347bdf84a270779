// A console of fakes and the model of its tree, driven side by side by one stream of random
// commands. A step picks a command, does it to both, and compares all that can be seen of them.
// The stream depends on nothing but the seed. One thread.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "nodes/server_node.h"
#include "nodes/table_node.h"
#include "tests/snapin/fake_driver.h"
#include "tests/snapin/tree_model.h"

namespace orvane::snapin {

class RandomConsole {
 public:
  using Text = platform::Text;
  using Long = platform::Long;

  explicit RandomConsole(unsigned nSeed);
  ~RandomConsole();

  /// One command, and the comparison behind it; false when the two differ.
  bool Step();
  /// The commands so far, one a line.
  Text History() const;
  /// What differs, one a line; empty while nothing does.
  Text Differences() const { return m_sDifferences; }

  /// Items, connections and rowsets seen on the way: all must be gone when the console is.
  std::vector<std::weak_ptr<void>> TakeSeen() { return std::move(m_seen); }

 private:
  using ItemPtr = model::ItemPtr;

  // ---- chance, the same with every standard library
  unsigned Number(unsigned nBelow);
  bool OneIn(unsigned n) { return Number(n) == 0; }
  template <class T, std::size_t n>
  const T& Any(const T (&choices)[n]) {
    return choices[Number(n)];
  }

  // ---- one step
  void PlanFaults();
  void ClearFaults();
  void PlanSchemaFault(const model::ItemPtr& item);
  void Command();
  ItemPtr AnyItem();
  void ItemCommand(const ItemPtr& item);
  void MenuCommand(const ItemPtr& item);
  void Settle();
  void Note(const Text& sCommand);
  void Click(const char* sMenuItem, const ItemPtr& item);
  static Text ServerOf(const model::Item& item);

  void Expand(const ItemPtr& item);
  void ExpandAgain(const ItemPtr& item);
  void Select(const ItemPtr& item);
  void ShowStructure();
  void Refresh();
  void Press();
  void ChangeWorld();
  void ChangeRoot();
  void SaveOnly();
  void SaveAndReopen();
  void UnloadAndStartAnew();
  void ClickManyItems(const ItemPtr& item);
  void ForeignCommand(const ItemPtr& item);

  void AddServer();
  void Connect(const ItemPtr& item);
  void Disconnect(const ItemPtr& item);
  void RemoveServer(const ItemPtr& item);
  void SetOptions();
  void AddCatalog(const ItemPtr& folder);
  void RemoveCatalog(const ItemPtr& item);
  void Build(const ItemPtr& item);
  void UseBuilder(fakes::FakeForm& form, const model::Table& table,
                  std::optional<model::Built>& built);
  std::vector<model::Typed> AnswerQueryDialog();
  void NewQuery(const ItemPtr& folder);
  void EditQuery(const ItemPtr& item);
  void RemoveQuery(const ItemPtr& item);
  platform::RecordsetPtr Answer(const Text& sStatement);

  // ---- comparing
  template <class Left, class Right>
  void Same(const Text& sWhat, const Left& left, const Right& right);
  void Tie(model::Node& node, const platform::ObjectPtr& real, const Text& sWhat);
  void Compare();
  void CompareCounts();
  void CompareLists();
  void CompareServer(model::Server& server, nodes::ServerNode& real);
  void CompareTable(model::Table& table, nodes::TableNode& real);
  void CompareItem(const model::Item& item, const fakes::FakeScopeItemPtr& real);
  void CompareResultPane();
  void CompareMenu();
  template <class T>
  void See(const std::shared_ptr<T>& object) {
    if (object) m_seen.emplace_back(object);
  }

  std::uint64_t m_nState;
  FakeDriver m_driver;
  model::World m_world{*m_driver.historian};
  model::TreeModel m_model{m_world};
  /// The server whose schema rowsets and statements are answered in this step.
  Text m_sServer;
  ItemPtr m_selected;
  std::vector<Text> m_pathOfSelected;
  std::vector<Text> m_statements;
  std::shared_ptr<fakes::FakeTableEditor> m_faultyEditor;
  std::shared_ptr<fakes::FakeQueryResults> m_faultyResults;
  Text m_sHistory;
  Text m_sDifferences;
  std::vector<std::weak_ptr<void>> m_seen;
};

}  // namespace orvane::snapin
