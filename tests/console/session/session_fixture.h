// A session over the fake snap-in, without a window. For the tests of the session; one thread.
#pragma once

#include <gtest/gtest.h>

#include "console/session/console_session.h"
#include "tests/console/session/fake_snap_in.h"

namespace orvane::console {

using fakes::Script;
using platform::Failure;
using platform::ScopeItemPtr;
using platform::Services;
using platform::Text;

class ConsoleSessionTest : public testing::Test {
 protected:
  ConsoleSessionTest() {
    m_script->expand = fakes::ExpandUsualTree;
    Services services;
    services.ui = m_ui;
    m_session = std::make_unique<ConsoleSession>(fakes::MakeCreator(m_script), services, nullptr);
  }

  void Start() {
    m_session->Start(platform::kSnapInProgId, nullptr);
    m_script->log.clear();
  }
  ScopeTreeItemPtr Find(const Text& sKey) { return m_session->Tree().Find(sKey); }
  void ExpandTo(std::initializer_list<const char*> sKeys) {
    m_session->Expand(m_session->Tree().StaticItem());
    for (const char* sKey : sKeys) m_session->Expand(Find(sKey));
    m_script->log.clear();
  }
  void ExpandToTables() { ExpandTo({"alpha", "alpha.Catalogs", "alpha.Catalogs.Machine"}); }

  std::shared_ptr<Script> m_script = std::make_shared<Script>();
  std::shared_ptr<fakes::FakeUserInterface> m_ui = std::make_shared<fakes::FakeUserInterface>();
  std::unique_ptr<ConsoleSession> m_session;
};

}  // namespace orvane::console
