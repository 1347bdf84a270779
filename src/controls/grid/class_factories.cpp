#include "controls/grid/class_factories.h"

#include <QApplication>
#include <QThread>
#include <utility>

#include "controls/grid/query_results.h"
#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::ObjectPtr;
using platform::Services;
using platform::Text;

namespace {

constexpr const char* kVersion = "1.00.0001";
constexpr const char* kMaker = "ORVANE";

/// Windows can only be made in a program that has a window system, by the thread that runs it.
void CheckWindowSystem() {
  const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (!application || application->thread() != QThread::currentThread()) {
    throw platform::Failure(platform::failure::kComponent,
                            "A grid can only be made on the user-interface thread of a program "
                            "with windows; use it in the console.");
  }
}

template <class Control>
class ControlFactory : public platform::ClassFactory {
 public:
  ControlFactory(std::shared_ptr<RowsStates> states, std::shared_ptr<UnsentStash> unsent,
                 std::shared_ptr<QStringList> cellQueries, std::weak_ptr<void> life)
      : m_states(std::move(states)),
        m_unsent(std::move(unsent)),
        m_cellQueries(std::move(cellQueries)),
        m_life(std::move(life)) {}

  ObjectPtr CreateInstance(const Services& services) override {
    CheckWindowSystem();
    m_unsent->Host(services.unsentRows);
    return std::make_shared<Control>(GridServices{services.objects, m_states, m_life.lock(),
                                                  MachineTime, services.failures, m_unsent,
                                                  m_cellQueries, services.longOperation});
  }

 private:
  std::shared_ptr<RowsStates> m_states;
  std::shared_ptr<UnsentStash> m_unsent;
  std::shared_ptr<QStringList> m_cellQueries;
  std::weak_ptr<void> m_life;
};

class TableQueryFactory : public platform::ClassFactory {
 public:
  explicit TableQueryFactory(std::weak_ptr<void> life) : m_life(std::move(life)) {}

  ObjectPtr CreateInstance(const Services& /*services*/) override {
    return std::make_shared<TableQuery>(m_life.lock());
  }

 private:
  std::weak_ptr<void> m_life;
};

}  // namespace

Library::Library()
    : m_life(std::make_shared<int>()),
      m_states(std::make_shared<RowsStates>()),
      m_unsent(std::make_shared<UnsentStash>()),
      m_cellQueries(std::make_shared<QStringList>()),
      m_tableEditor(
          std::make_unique<ControlFactory<TableEditor>>(m_states, m_unsent, m_cellQueries, m_life)),
      m_queryResults(std::make_unique<ControlFactory<QueryResults>>(m_states, m_unsent,
                                                                    m_cellQueries, m_life)),
      m_tableQuery(std::make_unique<TableQueryFactory>(m_life)) {}

std::vector<platform::ComponentDescription> Library::Classes() {
  return {
      {platform::kTableEditorProgId, "{5B1C7F0E-3D5A-4C86-9E0B-7A42D1F6C3A1}", "Control",
       "ORVANE Table Editor", "Shows the rows of a historian's table.", kVersion, kMaker},
      {platform::kQueryResultsProgId, "{0E9A6D44-8C1F-4B7B-A3D7-52C8F0B41E92}", "Control",
       "ORVANE Query Results", "Shows the rows of a query.", kVersion, kMaker},
      {platform::kTableQueryProgId, "{A7D25E13-60B9-4F3E-8B5C-19E4C7A0D683}", "Object",
       "ORVANE Table Query", "Holds which rows and columns of a table are shown.", kVersion,
       kMaker},
  };
}

platform::ClassFactory* Library::Factory(std::string_view sProgId) const {
  if (sProgId == platform::kTableEditorProgId) return m_tableEditor.get();
  if (sProgId == platform::kQueryResultsProgId) return m_queryResults.get();
  if (sProgId == platform::kTableQueryProgId) return m_tableQuery.get();
  return nullptr;
}

bool Library::Unused() const {
  return m_life.use_count() == 1;
}

}  // namespace orvane::controls
