// What the tree must be after each command: plain data and plain rules, written down apart from
// the snap-in, for the random commands to compare it with. Where the snap-in's handlers throw, the
// rules throw Stop: whatever was done before stays done. One thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "tests/fakes/historian.h"

namespace orvane::snapin::model {

using platform::Long;
using platform::SchemaNumber;
using platform::Text;
using Texts = std::vector<Text>;

/// A failure that ends the handler; what its sentence says is the business of other tests.
struct Stop {};

/// A box by its title and its buttons.
using Box = std::pair<Text, platform::MsgBoxButtons>;

/// An open connection, shared by its server and the grids bound to it.
struct Line {
  Text sServer;
  bool bOpen = true;
};
using LinePtr = std::shared_ptr<Line>;

/// What happens outside the tree in one step: how the next operations fail, and what they leave.
struct World {
  explicit World(fakes::FakeHistorian& h) : historian(h) {}

  struct SchemaFault {
    SchemaNumber schema;
    int nRow;  ///< first row that cannot be read; -1 when the rowset is refused
  };
  fakes::FakeHistorian& historian;
  std::optional<SchemaFault> schemaFault;
  bool bRefuseStatement = false;   ///< CREATE and DROP
  bool bRefuseLookup = false;      ///< the lookup of an identity
  std::optional<Text> sIdentity;   ///< what the lookup finds
  bool bNoProperties = false;      ///< the provider lacks its own properties
  bool bRootCannotExpand = false;  ///< the console refuses to open the root
  bool bAnswerYes = true;          ///< to confirmations

  int nLogons = 0;
  int nStatements = 0;
  int nCloses = 0;
  Long lPointer = 0;
  Texts statements;  ///< those that are no table's rows
  std::vector<Box> boxes;

  bool ByGuid() const;
  void Show(const Text& sTitle, platform::MsgBoxButtons buttons);
  /// The names that a schema rowset tells one by one, up to its fault.
  void ForEachName(SchemaNumber schema, const LinePtr& line, const Text& sCatalog,
                   const Text& sTable, const std::function<void(const Text&)>& use) const;
  /// A statement that selects from that table.
  void Run(const LinePtr& line, const Text& sCatalog, const Text& sTable);
  void Close(Line& line);
};

/// A node of the model, and the real one it stands for, once that was seen.
struct Node {
  Node() = default;
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  virtual ~Node() = default;
  std::weak_ptr<platform::Object> real;
};
using NodePtr = std::shared_ptr<Node>;

struct Server;
struct Catalog;

struct Query : Node {
  Text sName;
  Text sSql;
  bool bRows = false;
  std::weak_ptr<Server> server;
};
using QueryPtr = std::shared_ptr<Query>;

struct Table : Node {
  Text sCatalog;
  Text sName;
  Texts columns;
  Text sFilter;
  std::optional<platform::SortCriterion> sort;
  Long lMaxRows = 0;
  Long lTimeout = 0;
  bool bDefaultFilter = true;
  bool bRows = false;
  std::weak_ptr<Catalog> catalog;
};
using TablePtr = std::shared_ptr<Table>;

struct Catalog : Node {
  Text sName;
  std::vector<TablePtr> tables;
  std::weak_ptr<Server> server;
};
using CatalogPtr = std::shared_ptr<Catalog>;

struct Server : Node {
  explicit Server(World& w) : world(w) {}
  ~Server() override;
  World& world;
  Text sName = "localhost";
  Text sOptions;
  LinePtr line;
  std::vector<CatalogPtr> catalogs;
  std::vector<QueryPtr> queries;
};
using ServerPtr = std::shared_ptr<Server>;

struct Root : Node {
  Long lMaxRows = 100;
  Long lTimeout = 60;
  Text sStart = "*-1h";
  Text sEnd = "*";
  bool bSql = true;
  bool bContext = false;
  std::vector<ServerPtr> servers;
};

/// An item of the console's tree.
struct Item {
  Text sType;
  Text sKey;
  Text sName;
  Texts texts;
  NodePtr tag;
  bool bMark = false;
  bool bExpandedOnce = false;
  std::vector<std::shared_ptr<Item>> children;
};
using ItemPtr = std::shared_ptr<Item>;

/// A grid that the snap-in holds.
struct Grid {
  LinePtr line;
  bool bRows = false;
  bool bSql = false;
  bool bShown = true;    ///< false for one that could not be taken leave of
  std::string sFailing;  ///< the step that it refuses
  Text sCatalog;         ///< a table's
  Text sTable;
  Text sName;  ///< a query's
  Text sSql;
};
using GridPtr = std::shared_ptr<Grid>;

struct Typed {
  Text sName;
  Text sSql;
};
struct TypedCatalog {
  Text sName;
  Text sPath;
  Text sSize;
};
struct TypedOptions {
  Text sMaxRows;
  Text sTimeout;
  Text sStart;
  Text sEnd;
};
struct Built {
  Texts columns;
  bool bDefaultFilter = false;
  Text sFilter;
  std::optional<platform::SortCriterion> sort;
};

/// The names that collections take for the same: ASCII letters, and the two others that the
/// commands type.
Text Folded(const Text& sName);
Text DefaultFilter(const Root& root, const Text& sCatalog, const Text& sTable);

class TreeModel {
 public:
  explicit TreeModel(World& world);

  // ---- events of the console, each with the guard of its handler
  void Expand(const ItemPtr& item);
  void ExpandAgain(const ItemPtr& item);
  void Select(const ItemPtr& item, bool bGrid);
  void ShowView(const Text& sView, bool bGrid);
  void Hide();
  void Refresh();
  void Press(const Text& sKey);
  bool Save();
  void Reopen();
  void Unload();
  void NewDocument();

  // ---- commands
  void AddServer(const Text& sChosen);
  void Connect(const ItemPtr& item);
  void Disconnect(const ItemPtr& item);
  void RemoveServer(const ItemPtr& item);
  void SetOptions(const std::optional<TypedOptions>& typed);
  void AddCatalog(const ItemPtr& folder, const std::optional<TypedCatalog>& typed);
  void RemoveCatalog(const ItemPtr& item);
  /// The builder, which must come up exactly when the result is true.
  bool BuilderComesUp(const ItemPtr& item);
  void Build(const ItemPtr& item, const std::optional<Built>& built);
  void NewQuery(const ItemPtr& folder, const std::vector<Typed>& answers);
  void EditQuery(const ItemPtr& item, const std::vector<Typed>& answers);
  void RemoveQuery(const ItemPtr& item);
  /// A command of another node type: the item stands for something else.
  void ForeignCommand();

  // ---- what is
  std::vector<ItemPtr> Items() const;
  ItemPtr Find(const Text& sKey) const;
  /// Names of the context menu's items, those that are disabled with a "-" before them.
  static Texts MenuOf(const Item& item);
  bool IsShown(const Item& item) const { return viewItem && viewItem->sKey == item.sKey; }
  /// 0 none, 1 table, 2 query.
  int ToolbarKind() const { return m_nToolbarKind; }
  bool RefreshOffered() const { return m_bRefreshOffered; }

  std::shared_ptr<Root> root;
  ItemPtr rootItem;
  ItemPtr viewItem;  ///< none while the result pane shows nothing
  Text sView;
  GridPtr tblEditor;
  GridPtr qrResults;

 private:
  template <class Body>
  void Guard(Body&& body);
  Root& NeedRoot() const;
  void Show(const ItemPtr& item, const Text& sViewName, bool bGrid);
  bool Confirmed(const Text& sTitle);

  ItemPtr AddItem(const char* sType, const Text& sKey, Item& parent, const Text& sName, bool bMark);
  void RemoveItem(const Text& sKey);
  void ExpandBody(Item& item);
  void ExpandServer(Item& item);
  void AddTableItem(Item& item, const CatalogPtr& catalog, const LinePtr& line, const Text& sTable);
  void ApplyDefaults(Table& table);
  void AddQueryItem(Item& folder, const QueryPtr& query);
  void OpenLine(Server& server, const Text& sName);
  static void File(std::vector<QueryPtr>& list, const QueryPtr& query, const Typed& typed);
  void DropOnServer(const Server& server, const Catalog& catalog);
  void RequeryTable();
  void ExecuteQuery();

  World& m_world;
  int m_nToolbarKind = 0;
  bool m_bRefreshOffered = false;
};

}  // namespace orvane::snapin::model
