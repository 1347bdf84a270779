// Sees to it that stored times meet nothing but times. Works out from the bottom up what every
// expression is; where a stored time meets something else, that is turned into a time: a constant
// into a parameter, anything else by a function that reads it when the statement runs. What cannot
// be a time is refused with its place.
// Used by the translator, once for each statement and for each view that one reads. The kinds are
// worked out in time_kinds.cpp, what queries put out in time_outputs.cpp, what meets what is told
// in time_meetings.cpp and time_definitions.cpp, what is looked at again when the statement runs in
// time_guards.cpp, or when values are given for it in given_values.cpp, how texts are written in
// time_shapes.cpp, what becomes a time in time_conversions.cpp, which have no zone in
// times_without_zone.cpp, and what becomes a date or a time of day in day_conversions.cpp.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <utility>

#include "provider/dialect/given_values.h"
#include "provider/dialect/output_columns.h"
#include "provider/dialect/table_names.h"
#include "provider/dialect/written_times.h"

namespace orvane::provider::dialect {

/// The columns of views, each worked out once in a statement.
class ViewKinds;
/// Columns of times, each once.
using StoredTimes = std::set<engines::TimeColumn>;

class TimeAnalysis {
 public:
  struct Place {
    std::string_view sStatement;
    StatementTree& tree;
    TableNames& names;
    StatementEdits& edits;
    const TranslationSettings& settings;
    StatementWork& work;
    ViewKinds& views;
    /// What is kept beyond the statement, such as "a view": no time can be read for it. Else empty.
    platform::Text sKept{};
    /// That is stored already, and may be another program's.
    bool bStored = false;
  };

  explicit TimeAnalysis(const Place& place);

  /// Looks at everything. Fails with failure::kSqlError where a time meets what is none.
  void Run();
  /// Behind Run: columns of which the values became times are found under their names as before.
  void KeepNames();
  /// What the query puts out. Valid for as long as this is.
  const OutputColumns& OutputOf(const Query& query);
  /// The name that the column really has, empty when it is not known.
  platform::Text ColumnName(const Chain& chain, const Scope* scope);
  /// The same, or the alias of what is put out.
  platform::Text GivenName(const Chain& chain, const Scope* scope);
  /// The name that a column of the source really has, empty when it has none.
  platform::Text NameIn(const Source& source, const platform::Text& sColumn);
  /// What the computed columns of the table that is defined are, under their names in capitals.
  struct ComputedColumn {
    Kinds kinds = kinds::kNull;
    platform::Text sShape{};
  };
  std::map<platform::Text, ComputedColumn> Computed();
  /// True when the statement calls functions that read times.
  bool CallsFunctions() const { return m_bCalls; }
  /// Of those functions the names of such that let texts of one shape through, by shape.
  const std::map<platform::Text, platform::Text>& ShapeFunctions() const { return m_functionNames; }
  std::size_t SelectsOf(const Query& query);
  /// Behind Run: the stored columns of which the statement takes the values for times, and for each
  /// column of the query those that it hands out as they are.
  StoredTimes ReliesOn();
  std::vector<StoredTimes> Shows(const Query& query);
  /// Behind Run: what is expected of values that are not known yet.
  const std::vector<GivenValue>& Given() const { return m_given; }

 private:
  // For being the same, or for which comes first.
  enum class Comparison : std::uint8_t { Same, Order };
  // What all that meet become.
  enum class Meant : std::uint8_t { Time, Day, Clock };
  // One side of a comparison: an expression, a column of a query, or of a table's columns.
  struct Operand {
    const Expr* expr = nullptr;
    const Query* query = nullptr;
    const Source* table = nullptr;
    std::size_t column = 0;
    std::size_t token = 0;
  };
  struct Output {
    OutputColumns columns;
    // For each SELECT the columns with the items that put them out; of VALUES none.
    std::vector<OutputColumns> cores;
    bool bDone = false;
    bool bReadsItself = false;
    std::vector<Kinds> handedOut;
  };
  struct Found {
    const OutputColumn* column = nullptr;
    const Item* alias = nullptr;
  };
  // One step deeper into queries and expressions while it lives.
  class Deeper {
   public:
    Deeper(TimeAnalysis& analysis, std::size_t token) : m_analysis(analysis) {
      constexpr int kDeepest = 2500;
      if (++m_analysis.m_nDepth > kDeepest) {
        --m_analysis.m_nDepth;
        m_analysis.Fail(token, "The statement is nested too deeply",
                        "nest fewer brackets and queries");
      }
    }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;
    ~Deeper() { --m_analysis.m_nDepth; }

   private:
    TimeAnalysis& m_analysis;
  };

  const Token& At(std::size_t i) const { return m_tree.tokens[i]; }
  const platform::Text& Part(const Chain& chain, std::size_t part) const {
    return At(chain.parts[part]).sText;
  }
  void Step() { m_place.work.Step(); }
  // The arguments of iif, or of CASE written as one, that can come out of it.
  static std::vector<std::size_t> ChosenByIif(std::size_t nArguments);
  bool TimeAsDouble() const { return m_place.settings.bTimeAsDouble; }
  // An engine that has a type for times sees to what is stored and compared itself.
  const engines::SqlForm* Typed() const { return m_place.settings.form; }
  [[noreturn]] void Fail(std::size_t token, const platform::Text& sWhat,
                         const platform::Text& sAdvice) const;

  // --- what queries put out ---
  const OutputColumns& ColumnsOf(const Source& source);
  const OutputColumns& ColumnsOfNamed(const NamedQuery& named);
  const OutputColumns& ColumnsOfTable(const FoundTable& found);
  const OutputColumns& ColumnsOfFunction(const Source& source);
  const OutputColumns& ColumnsOfNew();
  const Output& ReadOutput(const Query& query);
  void ReadCores(const Query& query, Output& output);
  static const Expr* NamedBy(const Expr* expr);
  OutputColumns ReadCore(const Scope& core);
  void AppendStar(const Scope& core, const Item& item, std::size_t itemNumber, OutputColumns& to);
  void Append(OutputColumns& to, OutputColumn column, std::size_t token);
  void JoinCores(const Query& query, Output& output);
  void CheckReadingItself(const Query& query, const Output& output) const;
  void CheckNews(const Query& query, Kinds all) const;
  bool IsShared(const Scope& core, std::size_t place, const platform::Text& sColumn);
  bool HasColumn(const Scope& scope, std::size_t begin, std::size_t end,
                 const platform::Text& sColumn);
  Found Find(const Chain& chain, const Scope* scope);
  Found FindIn(const Chain& chain, const Scope& scope);
  const Item* ItemNamed(const Scope& scope, const platform::Text& sName);
  bool NumbersRows(const Chain& chain, const Scope* scope);
  std::optional<std::size_t> FindPlace(const OutputColumns& columns,
                                       const platform::Text& sName) const;
  std::size_t CountSelects(const Query& query);

  // --- what expressions are ---
  Kinds KindsOf(const Expr& expr);
  Kinds Work(const Expr& expr);
  Kinds KindsOfName(const Expr& expr);
  Kinds KindsOfArithmetic(const Expr& expr);
  Kinds KindsOfSum(const Expr& expr, Kinds left, Kinds right);
  void CountInUnit(const Expr& difference, Kinds times);
  Kinds KindsOfCase(const Expr& expr);
  Kinds KindsOfCast(const Expr& expr);
  Kinds KindsOfDayCast(const Expr& expr, Meant meant);
  Kinds KindsOfDaySum(const Expr& expr, Kinds left, Kinds right) const;
  Kinds KindsOfCall(const Expr& expr);
  Kinds KindsOfDate(const Expr& expr, const platform::Text& sFunction);
  bool KeepsBeginning(const Expr& expr, const platform::Text& sFunction);
  void LookAtModifiers(const Expr& expr, std::size_t first);
  bool KeepsUtc(const Expr& modifier) const;
  Kinds KindsOfLike(const Expr& expr);
  void SetKinds(const Expr& expr, Kinds kinds) { m_kinds[expr.nNumber] = kinds; }

  // --- how texts are written ---
  Kinds Shaped(const Expr& expr, Kinds kinds);
  const platform::Text& ShapeOf(const Expr& expr) const;
  platform::Text ShapeOf(const Operand& operand);
  platform::Text MadeShape(const Expr& expr);
  platform::Text ShapeOfCall(const Expr& expr);
  platform::Text ShapeOfPart(const Expr& expr) const;
  platform::Text CommonShape(const std::vector<const Expr*>& exprs);
  std::vector<platform::Text> ShapesOf(const std::vector<Operand>& operands);
  std::optional<int> NumberIn(const Expr& expr) const;

  // --- what meets what ---
  void LookAtScope(const Scope& scope);
  void LookAtJoins(const Scope& scope);
  void LookAtJoin(const Scope& scope, std::size_t joined, TokenRange before,
                  const platform::Text& sColumn, std::size_t token);
  void LookAtQuery(const Query& query);
  void LookAtChange();
  void LookAtInsert();
  void LookAtDefaults(const std::set<std::size_t>& given);
  void CheckStored(Kinds kinds, std::size_t token) const;
  static std::size_t TokenOf(const Query& query, const OutputColumn& column);
  void LookAtDefinition();
  void LookAtComputed(const ColumnDefinition& column);
  static Kinds ComputedOf(Kinds of);
  bool IsWritten(const Query& query, const OutputColumn& column) const;
  void LookAtSort(const Expr& expr, const Query* query);
  void CheckNumbered(const Expr& inside, const Query& query);
  void MeetIn(const Expr& expr);
  void MeetRows(const std::vector<const Expr*>& sides, std::size_t token, Comparison how);
  Kinds Meet(const std::vector<Operand>& operands, std::size_t token, Comparison how);
  std::vector<Operand> OperandsOf(const Expr& expr);
  Kinds KindsOf(const Operand& operand);
  static Kinds KindsOfType(platform::DataType type);
  const Expr* Inside(const Expr* expr) const;

  // --- what is looked at again when the statement runs ---
  void CheckMeeting(const std::vector<Operand>& operands, std::size_t token, Comparison how);
  void CheckWritten(const std::vector<Operand>& operands, std::size_t token, Comparison how);
  using FitsText = std::function<bool(std::string_view sText)>;
  FitsText TextsBeside(const std::vector<Operand>& operands, bool bPart, Comparison how);
  void CheckLiteral(const Expr& text, const std::vector<Operand>& operands, bool bPart,
                    Comparison how);
  bool IsLeft(Kinds kinds) const;
  void CheckLeft(Kinds kinds, std::size_t token) const;
  static platform::Text AdviceFor(Kinds kinds, std::string_view sInstead);
  void GuardFormat(const Operand& operand, const std::vector<Operand>& operands, bool bPart);
  void LookAtCounted(const Expr& sum, const Expr& side, Kinds other);
  void GuardNumber(const Operand& operand);
  void GuardText(const Operand& operand, bool bPart);
  void Guard(const Operand& operand, std::string_view sFunction, Kinds sound);
  void Guard(const Expr& expr, std::string_view sFunction, Kinds sound);
  void GuardOutput(const Query& query, std::size_t column, std::string_view sFunction, Kinds sound);

  // --- what is given while the statement runs ---
  void Expect(const Operand& operand, const Fits& fits, const platform::Text& sWhat,
              const platform::Text& sAdvice);
  void ExpectTimes(const std::vector<Operand>& operands);
  void ExpectMade(const std::vector<Operand>& operands, Kinds all, Comparison how);

  // --- what the statement relies on ---
  bool TakesAnyDay(const Expr& expr) const;
  std::set<const Expr*> ShownNames();
  std::set<platform::Text> NamesReliedOn();
  std::map<platform::Text, StoredTimes> Stored();

  // --- times without a zone ---
  bool IsWithoutZone(const Operand& operand);
  bool IsWithoutZone(const Expr& expr);
  bool MeetsClocks(const std::vector<Operand>& operands);
  /// As long as it lives, and unless it is false, written times become what clocks show then.
  class WithoutZone {
   public:
    WithoutZone(TimeAnalysis& times, bool bClocks)
        : m_times(times), m_bBefore(std::exchange(times.m_bClocks, bClocks)) {}
    ~WithoutZone() { m_times.m_bClocks = m_bBefore; }
    WithoutZone(const WithoutZone&) = delete;
    WithoutZone& operator=(const WithoutZone&) = delete;

   private:
    TimeAnalysis& m_times;
    bool m_bBefore;
  };
  bool IsGivenText(const Operand& operand) const;
  bool IsGivenText(const Query& query, std::size_t column) const;
  bool MeetsAsText(const std::vector<Operand>& operands);

  // --- becoming a time ---
  void Convert(const Operand& operand, Meant meant);
  void Convert(const Expr& expr, Meant meant = Meant::Time);
  bool ConvertParts(const Expr& expr, Kinds kinds, Meant meant);
  bool ConvertCall(const Expr& expr, Meant meant);
  void DropOrder(const Expr& collate);
  void DropPlus(const Expr& plus);
  void ConvertText(const Expr& expr);
  void ConvertOutput(const Query& query, std::size_t column, Meant meant);
  void Store(const Operand& operand);
  void StoreOutput(const Query& query, std::size_t column);
  void MakeWhole(const Expr& expr);
  void Wrap(const Expr& expr, Kinds kinds);
  void Bind(const Expr& expr, platform::Timestamp time);
  void ConvertNumber(const Expr& expr, const Expr& number, bool bNegative);
  void CheckKept(const Expr& expr) const;
  [[noreturn]] void FailMixed(std::size_t token) const;
  [[noreturn]] void FailUnread(std::size_t token, std::string_view sWhat, std::string_view sSuch,
                               std::string_view sType) const;
  [[noreturn]] void FailNumber(std::size_t token) const;
  [[noreturn]] void FailShifted(std::size_t token) const;

  // --- becoming a date or a time of day ---
  static Meant MeantBy(Kinds kinds);
  static Kinds KindsOf(Meant meant);
  void ConvertToDay(const Expr& expr, Meant meant);
  void ConvertDayText(const Expr& expr, Meant meant);
  void WrapDay(const Expr& expr, Kinds kinds, Meant meant);
  bool IsMomentInUtc(const Expr& inside, Kinds kinds) const;
  void WrapInZone(const Expr& expr, const engines::ZoneForm& form);
  bool IsSurely(const Expr& expr, Meant meant) const;
  bool IsDayOfDay(const Expr& expr);
  bool IsAsWritten(const Operand& operand) const;
  void StoreDay(const Operand& operand, Meant meant);
  void StoreDayOutput(const Query& query, std::size_t column, Meant meant);
  [[noreturn]] void FailStoredDay(std::size_t token, Meant meant) const;
  void GuardGiven(const Expr& expr, Meant meant);
  bool IsSoundDayDefault(const platform::Text& sDefault, Meant meant) const;
  [[noreturn]] void FailDayNumber(std::size_t token, Meant meant) const;
  [[noreturn]] void FailNoDay(std::size_t token, Meant meant) const;
  [[noreturn]] void FailMixedDays(std::size_t token) const;

  Place m_place;
  StatementTree& m_tree;
  std::vector<std::optional<Kinds>> m_kinds;                 // by number of the expression
  std::vector<bool> m_working;                               // the same
  std::unordered_map<std::size_t, platform::Text> m_shapes;  // the same, of those that are known
  std::map<platform::Text, platform::Text> m_functionNames;
  std::map<const Query*, Output> m_outputs;
  std::map<const NamedQuery*, OutputColumns> m_named;
  std::set<const NamedQuery*> m_namedDone;  // those that are known whole
  std::map<const FoundTable*, OutputColumns> m_tables;
  std::map<const Source*, OutputColumns> m_functions;
  std::optional<OutputColumns> m_new;
  std::map<const Query*, std::size_t> m_selects;
  std::set<const Expr*> m_aliases;  // items of which the kinds were told under their names
  std::map<const Scope*, std::unordered_map<platform::Text, const Item*>> m_itemNames;
  std::set<std::pair<std::size_t, std::string_view>> m_guarded;  // by number of the expression
  std::set<const Query*> m_passedOn;  // of which the columns are found under their own names
  std::size_t m_nColumns = 0;
  int m_nDepth = 0;
  std::vector<GivenValue> m_given;
  bool m_bCalls = false;
  bool m_bClocks = false;
};

class ViewKinds {
 public:
  ViewKinds(TableCache& cache, const TranslationSettings& settings, StatementWork& work)
      : m_cache(cache), m_settings(settings), m_work(work) {}

  struct View {
    std::vector<Kinds> kinds;  ///< of its columns in order; empty when they are not known
    std::vector<platform::Text> shapes{};  ///< of texts that dates are written in, the same
    std::size_t nSelects = 1;              ///< how many run for it
    platform::Text sFailure{};  ///< why it compares what it should not; empty when it does not
    StoredTimes relied{};       ///< the columns of times that it relies on itself
    std::vector<StoredTimes> shown{};  ///< for each column those that it hands out as they are
  };
  /// What the view puts out. Never fails for what stands in the view.
  const View& Of(const FoundTable& found);
  /// What the computed columns of the table are, under their names in capitals; of one that is
  /// missing nothing is known. Never fails for what stands in the table's definition.
  using ComputedColumns = std::map<platform::Text, TimeAnalysis::ComputedColumn>;
  const ComputedColumns& Computed(const FoundTable& found);

 private:
  struct Definition;
  std::unique_ptr<Definition> ReadDefinition(const FoundTable& found);
  View Read(const FoundTable& found);

  TableCache& m_cache;
  const TranslationSettings& m_settings;
  StatementWork& m_work;
  std::map<const FoundTable*, View> m_views;
  std::map<const FoundTable*, ComputedColumns> m_computed;
  int m_nDepth = 0;
};

}  // namespace orvane::provider::dialect
