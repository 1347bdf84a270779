// A provider, a prompt and a host's waiting that do as they are told, for tests of the connection.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <thread>

#include "ado/connection.h"
#include "ado/recordset_builder.h"
#include "platform/case_folding.h"
#include "platform/failure.h"
#include "tests/ado/failure_of.h"

namespace orvane::tests {

using platform::Boolean;
using platform::Failure;
using platform::Long;
using platform::Text;
using platform::Value;

/// The connection string of a server.
inline constexpr const char* kString = "Provider = ORVOLEDB; Data Source = S1;";

/// What the fakes were asked, shared by all of one test.
struct Journal {
  std::vector<Text> calls;
  std::vector<std::pair<Text, Text>> settings;  ///< of the last Open
  Text sPassword;                               ///< of the last Open
  bool bMayGoUnencrypted = false;               ///< in the last Open
  ado::Statement statement;
  std::vector<Value> vtRestrictions;
  std::map<Text, Value> values = {{"Log Level", 0}, {"Time Zone", "Local"}};
  std::function<void(std::stop_token)> duringOpen = [](std::stop_token) {};
  std::function<void(std::stop_token)> duringExecute = [](std::stop_token) {};
  std::function<void()> duringClose = [] {};
  /// When set, what a statement does with whoever takes its rows.
  std::function<void(ado::RowReceiver&, const std::stop_token&)> runs{};
};

class FakeSession final : public ado::Session {
 public:
  explicit FakeSession(Journal& journal) : m_journal(journal) {}
  ~FakeSession() override { m_journal.calls.emplace_back("~Session"); }

  ado::StatementResult Execute(const ado::Statement& statement, std::stop_token stop) override {
    m_journal.statement = statement;
    if (m_journal.runs) {
      m_journal.runs(*statement.rows, stop);
      return {nullptr, 7};
    }
    m_journal.duringExecute(std::move(stop));
    ado::RecordsetBuilder builder({{"A"}});
    builder.AppendRow({1});
    return {builder.Finish(), 7};
  }
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const Value> vtRestrictions,
                                    std::stop_token stop) override {
    m_journal.vtRestrictions.assign(vtRestrictions.begin(), vtRestrictions.end());
    m_journal.duringExecute(std::move(stop));
    ado::RecordsetBuilder builder({{"NUMBER"}});
    builder.AppendRow({static_cast<Long>(schema)});
    return builder.Finish();
  }
  Value PropertyValue(const Text& sName) const override { return m_journal.values.at(sName); }
  void PropertyValue(const Text& sName, const Value& vtValue) override {
    m_journal.values.at(sName) = vtValue;
  }
  void Close() override {
    m_journal.calls.emplace_back("Close");
    m_journal.duringClose();
  }

 private:
  Journal& m_journal;
};

class FakeProvider final : public ado::Provider {
 public:
  explicit FakeProvider(Journal& journal) : m_journal(journal) {}

  std::vector<ado::PropertyDescription> Properties() const override { return properties; }
  std::vector<Text> KnownServers() const override { return knownServers; }
  std::unique_ptr<ado::Session> Open(const ado::ConnectionSettings& settings, const Text& sPassword,
                                     std::stop_token stop) override {
    m_journal.calls.emplace_back("Open");
    m_journal.settings = settings.Items();
    m_journal.bMayGoUnencrypted = settings.MayGoUnencrypted();
    m_journal.sPassword = sPassword;
    m_journal.duringOpen(std::move(stop));
    return std::make_unique<FakeSession>(m_journal);
  }

  std::vector<Text> knownServers = {"localhost", "S1"};
  std::vector<ado::PropertyDescription> properties = {{"Log Level", 3}, {"Time Zone", "UTC"}};

 private:
  Journal& m_journal;
};

class FakeProviders final : public ado::ProviderSource {
 public:
  std::shared_ptr<ado::Provider> Find(std::string_view sName) override {
    const auto found = providers.find(platform::FoldCase(sName));
    return found == providers.end() ? nullptr : found->second;
  }

  std::map<Text, std::shared_ptr<ado::Provider>> providers;  ///< under their folded names
};

class FakePrompt final : public ado::LogonPrompt {
 public:
  Boolean Ask(ado::LogonRequest& request) override {
    asked.push_back(request);
    return answer(request);
  }
  Boolean MayGoUnencrypted(const Text& sServer) override {
    unencrypted.push_back(sServer);
    return bMayGoUnencrypted;
  }

  std::vector<ado::LogonRequest> asked;
  std::vector<Text> unencrypted;  ///< servers that were asked about
  bool bMayGoUnencrypted = false;
  std::function<bool(ado::LogonRequest&)> answer = [](ado::LogonRequest&) { return true; };
};

/// Works on another thread, as a host with a window does, and cancels when told to.
class FakeLongOperation final : public platform::LongOperation {
 public:
  void Run(const Text& sWhat, const std::function<void(std::stop_token)>& work) override {
    RunShown(sWhat, work, [] { return false; });
  }
  void RunShown(const Text& sWhat, const std::function<void(std::stop_token)>& work,
                const std::function<bool()>& tick) override {
    what.push_back(sWhat);
    std::exception_ptr failed;
    std::atomic<bool> bDone = false;
    std::jthread worker([&](std::stop_token stop) {
      try {
        work(std::move(stop));
      } catch (...) {
        failed = std::current_exception();
      }
      bDone = true;
    });
    if (bCancel) worker.request_stop();
    for (; !bDone; std::this_thread::yield()) bShown = tick();
    worker.join();
    if (failed) std::rethrow_exception(failed);
  }

  std::vector<Text> what;
  bool bCancel = false;
  bool bShown = false;  ///< what the last tick said
};

/// Waits for the stop and ends the way an engine does.
inline void WaitForCancel(const std::stop_token& stop) {
  while (!stop.stop_requested()) std::this_thread::yield();
  throw Failure(platform::failure::kCancelled, "The statement was cancelled.");
}

struct ConnectionFixture {
  Journal journal;
  std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>(journal);
  std::shared_ptr<FakeProviders> providers = std::make_shared<FakeProviders>();
  std::shared_ptr<FakePrompt> prompt = std::make_shared<FakePrompt>();
  std::shared_ptr<FakeLongOperation> longOperation = std::make_shared<FakeLongOperation>();
  std::shared_ptr<ado::Connection> cn;

  ConnectionFixture() {
    providers->providers["orvoledb"] = provider;
    cn = Make();
  }
  std::shared_ptr<ado::Connection> Make() {
    return std::make_shared<ado::Connection>(
        ado::ConnectionServices{providers, prompt, longOperation});
  }
  /// What the provider was opened with, under that name.
  Text Opened(const Text& sName) const {
    Text sValue = "(none)";
    for (const auto& [sItem, sItemValue] : journal.settings) {
      if (platform::FoldCase(sItem) == platform::FoldCase(sName)) sValue = sItemValue;
    }
    return sValue;
  }
  Value Property(const Text& sName) { return cn->Properties().Item(sName).Value(); }
  void Property(const Text& sName, const Value& vtValue) {
    cn->Properties().Item(sName).Value(vtValue);
  }
};

/// A connection that tests open.
class ConnectionUnderTest : public ::testing::Test, protected ConnectionFixture {
 protected:
  void Open(const Text& sString = kString, const Text& sUser = "", const Text& sPassword = "") {
    cn->Open(sString, sUser, sPassword, platform::kOptionUnspecified);
  }
  Told OpenFails(const Text& sString = kString) {
    return FailureOf([&] { Open(sString); });
  }
  void ExpectClosed() {
    EXPECT_FALSE(cn->IsOpen());
    EXPECT_EQ(FailureOf([&] { cn->Close(); }).lNumber, platform::failure::kObjectClosed);
  }
};

}  // namespace orvane::tests
