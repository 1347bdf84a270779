#include "controls/grid/table_time.h"

#include <utility>

#include "controls/grid/grid_core.h"
#include "controls/grid/grid_trend.h"
#include "controls/grid/grid_window.h"
#include "controls/statements/time_column.h"
#include "platform/conversions.h"
#include "platform/quoting.h"
#include "zones/clock_input.h"

namespace orvane::controls {

using platform::Failure;
using platform::Text;
using platform::Value;

namespace {

constexpr platform::Long kMostTags = 100'000;
constexpr platform::Long kUnitsTimeout = 10;
constexpr std::string_view kNamePrefix = "Orv_";

/// Keeps a mark true as long as it lives, also when the mark's owner does not.
struct Marked {
  explicit Marked(std::shared_ptr<bool> bMark) : b(std::move(bMark)) { *b = true; }
  ~Marked() { *b = false; }
  Marked(const Marked&) = delete;
  Marked& operator=(const Marked&) = delete;
  std::shared_ptr<bool> b;
};

}  // namespace

TableTime::TableTime(GridCore& core, Grid grid)
    : m_core(core),
      m_grid(std::move(grid)),
      m_bar(new TimeBar([&core] { return core.Now(); }, &core.Window())),
      m_following(core, {m_grid.sent, [this] { return !*m_asking && m_grid.mayFollow(); },
                         [this] { RowsShown(); }}) {
  m_core.Window().Above(m_bar);
  m_bar->OfferKeep(!m_grid.statement);
  m_bar->hide();
  m_bar->OnRange([this](const std::optional<TimeRange>& range) { Choose(range); });
  m_bar->OnKeep([this] { KeepRange(); });
  m_bar->OnFollow([this](TimeBar::Follow pause) { m_following.Every(pause); });
  m_core.Window().Trend().OnRange([this](const trend::TrendSpan& span) {
    Choose(TimeRange{zones::ClockText(span.from, m_core.Zone()),
                     zones::ClockText(span.to, m_core.Zone())});
  });
  m_core.Window().Trend().AskUnits([this] { return AskUnits(); });
  m_core.Window().Trend().AskReach([this, life = std::weak_ptr<bool>(m_asking)] {
    return life.expired() ? std::nullopt : FollowedTimes();
  });
}

void TableTime::Forget() {
  m_viewing = {};
  m_bar->Refuse({});
}

bool TableTime::Learn() {
  if (*m_asking) GridCore::FailBusy();
  const platform::TableQueryPtr query = m_grid.query();
  // With an order of its own there is nothing to ask: the rows will tell.
  if (query->SortCriterion() || !m_core.Connection()) return true;
  const std::weak_ptr<bool> life = m_asking;
  TableTimeColumn column;
  try {
    const Marked asking(m_asking);
    const platform::ConnectionPtr cn = m_core.Connection();
    column = TimeColumnOf(*cn, query->Catalog(), query->Table());
  } catch (const Failure& failure) {
    if (life.expired()) return false;
    if (failure.Number() == platform::failure::kCancelled) m_core.Fail(failure);
    // Whatever else is wrong, the statement will tell. What was known before still holds: without
    // it, the range that the bar shows would leave the statement unseen.
    return true;
  } catch (const std::exception&) {
    return !life.expired();
  }
  if (life.expired()) return false;
  // Where times are numbers, the rows may have told what the server's columns do not.
  const platform::ConnectionPtr cn = m_core.Connection();
  if (column.name || !cn || !GivesTimesAsNumbers(*cn)) {
    m_viewing.timeColumn = std::move(column.name);
  }
  m_viewing.bNullIsNewest = column.bNullIsNewest;
  return true;
}

void TableTime::RowsShown() {
  if (m_grid.statement && m_core.Recordset()) m_viewing.timeColumn.reset();
  if (!m_viewing.timeColumn && m_core.Recordset()) {
    if (const auto column = TimeColumnOf(*m_core.Recordset())) {
      const platform::Field& field = m_core.Recordset()->FieldAt(*column);
      m_viewing.timeColumn = field.Name();
      m_viewing.bNullIsNewest = field.Nullable() && field.NullIsLast();
    }
  }
  m_bar->setVisible(m_viewing.timeColumn.has_value());
  // Nobody could end what has no bar.
  if (!m_viewing.timeColumn) StopFollowing();
  ShowRange();
}

std::optional<TimeRange> TableTime::OwnRange() const {
  const platform::TableQueryPtr query = Query();
  if (!query || !m_viewing.timeColumn) return std::nullopt;
  return RangeIn(query->TimeFilter(), *m_viewing.timeColumn);
}

std::optional<trend::TrendSpan> TableTime::FollowedTimes() const {
  auto range = m_viewing.range ? m_viewing.range : OwnRange();
  // Somebody's own range says as well up to when rows can come.
  if (const auto query = Query(); !range && query && m_viewing.timeColumn) {
    range = RangeIn(query->FilterCondition(), *m_viewing.timeColumn);
  }
  if (!range || !m_following.IsFollowing()) return std::nullopt;
  const platform::Timestamp now = m_core.Now();
  const auto read = ReadTimeRange(*range, {m_core.Zone(), now});
  const auto* span = std::get_if<TimeSpan>(&read);
  if (!span || !span->from || *span->from >= now) return std::nullopt;
  // Of times that are over nothing more comes.
  if (span->to && *span->to < now) return std::nullopt;
  return trend::TrendSpan{*span->from, now};
}

void TableTime::ShowRange() {
  m_bar->Zone(m_core.Zone());
  m_bar->OwnRange(OwnRange());
  m_bar->Range(m_viewing.range);
}

void TableTime::Keep(RowsState& state) const {
  state.viewing = m_viewing;
}

void TableTime::Restore(const RowsState* state) {
  if (state != nullptr) m_viewing = state->viewing;
  RowsShown();
}

platform::TableQueryPtr TableTime::Query() const {
  return m_grid.query ? m_grid.query() : nullptr;
}

QString TableTime::WhyNoRange(const TimeRange& range) {
  Viewing within = m_viewing;
  within.range = range;
  const Text sSql = StatementWithin(m_grid.statement(), within);
  const Marked asking(m_asking);
  try {
    // Whether it can be read at all; nothing is run.
    m_core.Ask("EXPLAIN " + sSql, 1, kUnitsTimeout);
  } catch (const Failure& failure) {
    // Of anything else the rows will tell.
    if (failure.Number() == platform::failure::kSqlError) {
      return QStringLiteral("This query takes no range of time. ") +
             QString::fromStdString(failure.Description());
    }
  } catch (const std::exception&) {
  }
  return {};
}

void TableTime::StopFollowing() {
  m_bar->StopFollowing();
  m_following.Every(std::nullopt);
}

void TableTime::Choose(const std::optional<TimeRange>& range) {
  if (m_core.Running() || *m_asking) {
    // The rows that come are those of the range before.
    m_bar->Range(m_viewing.range);
    m_core.Window().Remark("The range was not set: rows are still being fetched; stop that first.",
                           true);
    return;
  }
  if (range && m_grid.statement) {
    const std::weak_ptr<bool> life = m_asking;
    const QString sWhy = WhyNoRange(*range);
    if (life.expired()) return;
    if (!sWhy.isEmpty()) {
      m_bar->Range(m_viewing.range);
      return m_bar->Refuse(sWhy);
    }
  }
  m_viewing.range = range;
  Requery();
}

void TableTime::Requery() {
  const std::weak_ptr<bool> life = m_asking;
  try {
    m_grid.requery();
  } catch (const std::exception& exception) {
    // The window shows its sentence; nobody is behind a button or a clock to be told.
    if (life.expired()) return;
    m_core.Note(exception);
  }
}

void TableTime::KeepRange() {
  const platform::TableQueryPtr query = Query();
  if (!query || !m_viewing.range || !m_viewing.timeColumn) return;
  query->FilterCondition(FilterWithin(*query, m_viewing));
  query->TimeFilter(ConditionOf(*m_viewing.range, *m_viewing.timeColumn));
  m_viewing.range.reset();
  ShowRange();
  // Otherwise the default filter would take its place one day.
  m_core.Window().Raise(&GridEvents::filterKept);
}

trend::TrendView::Units TableTime::AskUnits() {
  const platform::TableQueryPtr query = Query();
  // Of a named query the server has told which table its rows are of, if they are of one.
  const RowTable& rows = m_core.Editing().Session().Updatability().table;
  const Text sCatalog = query ? query->Catalog() : rows.sCatalog;
  const Text sTable = query ? query->Table() : rows.sTable;
  if (sCatalog.empty() || m_core.Running() || *m_asking) return {};
  const Text sPrefix(sTable.starts_with(kNamePrefix) ? kNamePrefix : std::string_view());
  const Text sSql = "SELECT \"Tag\", \"Unit\" FROM " + platform::QuotedName(sCatalog) + ".." +
                    platform::QuotedName(sPrefix + "Tags");
  trend::TrendView::Units units;
  try {
    const Marked asking(m_asking);
    const platform::RecordsetPtr rs = m_core.Ask(sSql, kMostTags, kUnitsTimeout);
    for (platform::RowIndex row = 0; rs && row < rs->RecordCount(); ++row) {
      const Value vtUnit = rs->ValueAt(row, 1);
      if (!vtUnit.IsNull()) units[platform::ToText(rs->ValueAt(row, 0))] = platform::ToText(vtUnit);
    }
  } catch (const std::exception&) {
    // A catalog need not have such a table; the lines then have no units.
  }
  return units;
}

}  // namespace orvane::controls
