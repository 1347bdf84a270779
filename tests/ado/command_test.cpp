#include "ado/command.h"

#include <gtest/gtest.h>

#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::Value;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

class CommandTest : public ::testing::Test, protected tests::ConnectionFixture {
 protected:
  CommandTest() {
    cn->Open("Provider = ORVOLEDB; Data Source = S1;", "", "", platform::kOptionUnspecified);
    command.ActiveConnection(cn);
  }
  Command command;
};

TEST_F(CommandTest, is_made_with_30_seconds_and_without_a_row_limit) {
  EXPECT_EQ(command.CommandTimeout(), 30);
  EXPECT_EQ(command.MaxRecords(), 0);
  EXPECT_FALSE(command.ReadOnly());
  EXPECT_EQ(command.CommandText(), "");
}

TEST_F(CommandTest, tells_the_provider_whether_it_only_reads) {
  for (const bool bReadOnly : {true, false}) {
    command.ReadOnly(bReadOnly);
    EXPECT_EQ(command.ReadOnly(), bReadOnly);
    command.Execute();
    EXPECT_EQ(journal.statement.bReadOnly, bReadOnly);
  }
}

TEST_F(CommandTest, runs_its_text_with_its_limits) {
  command.CommandText("SELECT 'Größe'");
  command.CommandTimeout(5);
  command.MaxRecords(100);
  platform::Long lAffected = -1;
  const auto rs = command.Execute(&lAffected);
  EXPECT_TRUE(rs->Fields().Item("A").Value() == Value(1));
  EXPECT_EQ(lAffected, 7);
  EXPECT_EQ(journal.statement.sText, "SELECT 'Größe'");
  EXPECT_EQ(journal.statement.lMaxRecords, 100);
  EXPECT_EQ(journal.statement.timeout, std::chrono::seconds(5));
}

TEST_F(CommandTest, can_be_run_again_with_another_text) {
  command.CommandText("CREATE DATABASE \"N\" ");
  command.Execute();
  EXPECT_EQ(journal.statement.sText, "CREATE DATABASE \"N\" ");
  command.CommandText("SELECT 1");
  command.Execute();
  EXPECT_EQ(journal.statement.sText, "SELECT 1");
}

TEST_F(CommandTest, needs_a_connection) {
  const Told expected{failure::kObjectNotSet,
                      "The command has no connection: set its active connection first."};
  EXPECT_EQ(FailureOf([] { Command().Execute(); }), expected);
  command.ActiveConnection(nullptr);
  EXPECT_EQ(FailureOf([&] { command.Execute(); }), expected);
}

TEST_F(CommandTest, needs_an_open_connection) {
  cn->Close();
  EXPECT_EQ(FailureOf([&] { command.Execute(); }),
            (Told{failure::kObjectClosed, "The connection is closed: open it first."}));
}

TEST_F(CommandTest, keeps_its_connection_alive) {
  cn.reset();
  EXPECT_EQ(command.Execute()->RecordCount(), 1);
}

TEST_F(CommandTest, refuses_a_connection_of_another_make) {
  class Foreign final : public platform::Connection {
    platform::Text ConnectionString() const override { return {}; }
    void ConnectionString(const platform::Text&) override {}
    platform::Properties& Properties() override { return m_properties; }
    void Open(const platform::Text&, const platform::Text&, const platform::Text&,
              platform::Long) override {}
    void Close() override {}
    bool IsOpen() const override { return true; }
    platform::RecordsetPtr OpenSchema(platform::SchemaNumber, std::span<const Value>) override {
      return nullptr;
    }
    ConnectionProperties m_properties;
  };
  EXPECT_EQ(
      FailureOf([&] { command.ActiveConnection(std::make_shared<Foreign>()); }),
      (Told{failure::kInvalidArgument,
            "The command cannot use this connection; give it one that this program has opened."}));
  EXPECT_EQ(command.Execute()->RecordCount(), 1);
}

TEST_F(CommandTest, refuses_limits_below_zero) {
  EXPECT_EQ(FailureOf([&] { command.CommandTimeout(-1); }),
            (Told{failure::kInvalidArgument,
                  "The time-out of a command must be 0 (no time-out) or more seconds."}));
  EXPECT_EQ(FailureOf([&] { command.MaxRecords(-1); }),
            (Told{failure::kInvalidArgument,
                  "The row limit of a command must be 0 (all rows) or more rows."}));
  EXPECT_EQ(command.CommandTimeout(), 30);
  EXPECT_EQ(command.MaxRecords(), 0);
}

}  // namespace
}  // namespace orvane::ado
