#include "controls/grid/row_count.h"

#include <QPointer>
#include <utility>

#include "controls/grid/grid_core.h"
#include "controls/grid/grid_window.h"
#include "controls/statements/sql_text.h"
#include "controls/values/tell_box.h"
#include "controls/view/status_strip.h"

namespace orvane::controls {

using platform::Failure;
using platform::Text;

RowCount::RowCount(GridCore& core, std::function<Counted()> counted)
    : m_core(core), m_counted(std::move(counted)) {
  const auto canCount = [this] {
    return !m_counted().sTable.empty() && m_core.Connection() && m_core.Connection()->IsOpen() &&
           !m_core.Running();
  };
  core.Window().Rows().Commands().Add(
      {CommandGroup::Find, "Count Ro&ws", {}, [this] { Run(); }, canCount});
  core.Window().OfferCount([this, canCount] {
    if (canCount()) Run();
  });
}

void RowCount::Run() {
  // Events are handled while the server counts, and one of them may be the end of the grid.
  const std::weak_ptr<void> life = m_life;
  const QPointer<GridWindow> window = &m_core.Window();
  const Counted counted = m_counted();
  const bool bFilter = counted.sFilter.find_first_not_of(" \t\r\n") != Text::npos;
  window->Remark(QStringLiteral("Counting rows\u2026"), false);
  try {
    const platform::RecordsetPtr rs =
        m_core.Ask(ComposeCount(counted.sTable, counted.sFilter), 0, 0);
    if (life.expired() || !window || !rs || rs->RecordCount() == 0) return;
    const platform::Value vtRows = rs->ValueAt(0, 0);
    const auto* ll = vtRows.As<std::int64_t>();
    const auto* l = vtRows.As<platform::Long>();
    if (ll == nullptr && l == nullptr) return;
    const QString sRows = RowsText(ll ? *ll : *l);
    window->Remark(bFilter ? sRows + QStringLiteral(" in the table meet the query's filter.")
                           : sRows + QStringLiteral(" in the table."),
                   false);
  } catch (const std::exception& exception) {
    if (life.expired() || !window) return;
    const auto* failed = dynamic_cast<const Failure*>(&exception);
    if (failed && failed->Number() == platform::failure::kCancelled) {
      window->Remark("The rows were not counted, as that was cancelled.", false);
    } else {
      window->Remark(SentenceOf(exception), true);
    }
  }
}

}  // namespace orvane::controls
