#include "ado/connection.h"

#include <gtest/gtest.h>

#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::SchemaNumber;
using platform::Text;
using platform::Value;
using tests::FailureOf;
using tests::kString;
using tests::Told;
namespace failure = platform::failure;

class ConnectionTest : public tests::ConnectionUnderTest {};

TEST_F(ConnectionTest, is_closed_when_it_is_made) {
  ExpectClosed();
  EXPECT_EQ(cn->ConnectionString(), "");
}

TEST_F(ConnectionTest, opens_the_named_provider_with_the_string_as_it_is_written) {
  Open("Provider = ORVOLEDB; Data Source = S1;Log Level = 1;Log File = ;Log Level = 2;");
  EXPECT_TRUE(cn->IsOpen());
  const std::vector<std::pair<Text, Text>> expected = {
      {"Provider", "ORVOLEDB"}, {"Data Source", "S1"}, {"Log Level", "1"},
      {"Log File", ""},         {"Log Level", "2"},    {"User ID", ""}};
  EXPECT_EQ(journal.settings, expected);
}

TEST_F(ConnectionTest, an_empty_string_opens_with_the_string_set_before) {
  cn->ConnectionString(kString);
  Open("");
  EXPECT_EQ(Opened("Data Source"), "S1");
  EXPECT_EQ(cn->ConnectionString(), kString);
}

TEST_F(ConnectionTest, a_string_given_to_open_replaces_the_one_set_before) {
  cn->ConnectionString("Provider = ORVOLEDB; Data Source = S9;");
  Open();
  EXPECT_EQ(Opened("Data Source"), "S1");
  EXPECT_EQ(cn->ConnectionString(), kString);
}

TEST_F(ConnectionTest, an_unknown_provider_is_told_by_name) {
  EXPECT_EQ(OpenFails("Provider = OTHER; Data Source = S1;"),
            (Told{failure::kProviderNotFound,
                  "There is no provider \"OTHER\" on this machine: register it, or name another "
                  "one in the connection string."}));
  ExpectClosed();
}

TEST_F(ConnectionTest, a_string_without_a_provider_is_told) {
  const Told expected{failure::kProviderNotFound,
                      "The connection string names no provider: begin it with \"Provider = \" and "
                      "the provider's name."};
  EXPECT_EQ(OpenFails("Data Source = S1;"), expected);
  EXPECT_EQ(OpenFails("Provider = ; Data Source = S1;"), expected);
  EXPECT_EQ(OpenFails(""), expected);
  ExpectClosed();
}

TEST_F(ConnectionTest, a_provider_that_cannot_be_loaded_is_told_in_its_own_words) {
  class Broken final : public ProviderSource {
    std::shared_ptr<Provider> Find(std::string_view) override {
      throw platform::Failure(failure::kComponent, "It does not load.");
    }
  };
  cn = std::make_shared<Connection>(
      ConnectionServices{std::make_shared<Broken>(), prompt, longOperation});
  EXPECT_EQ(OpenFails(), (Told{failure::kComponent, "It does not load."}));
}

TEST_F(ConnectionTest, a_string_that_cannot_be_read_is_told_by_open_only) {
  cn->ConnectionString("Provider = ORVOLEDB; junk;");
  EXPECT_EQ(cn->ConnectionString(), "Provider = ORVOLEDB; junk;");
  EXPECT_EQ(OpenFails("").lNumber, failure::kInvalidArgument);
  ExpectClosed();
}

TEST_F(ConnectionTest, opening_twice_is_refused_and_leaves_the_first_session) {
  Open();
  EXPECT_EQ(OpenFails(),
            (Told{failure::kObjectOpen, "The connection is already open: close it first."}));
  EXPECT_EQ(FailureOf([&] { cn->ConnectionString("Provider = X;"); }).lNumber,
            failure::kObjectOpen);
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(journal.calls, std::vector<Text>{"Open"});
}

TEST_F(ConnectionTest, what_needs_an_open_connection_is_refused_while_closed) {
  const Told expected{failure::kObjectClosed, "The connection is closed: open it first."};
  EXPECT_EQ(FailureOf([&] { cn->OpenSchema(SchemaNumber::Catalogs); }), expected);
  EXPECT_EQ(FailureOf([&] { cn->Execute({"SELECT 1"}); }), expected);
  EXPECT_EQ(FailureOf([&] { cn->Close(); }), expected);
}

TEST_F(ConnectionTest, closing_twice_is_refused) {
  Open();
  cn->Close();
  EXPECT_EQ(FailureOf([&] { cn->Close(); }).lNumber, failure::kObjectClosed);
  EXPECT_EQ(journal.calls, (std::vector<Text>{"Open", "Close", "~Session"}));
}

TEST_F(ConnectionTest, can_be_opened_again_after_it_was_closed) {
  Open();
  cn->Close();
  Open("Provider = ORVOLEDB; Data Source = S2;");
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(Opened("Data Source"), "S2");
}

TEST_F(ConnectionTest, a_failed_open_leaves_it_closed_with_the_providers_failure) {
  journal.duringOpen = [](std::stop_token) {
    throw platform::Failure(failure::kServerNotFound, "There is no server \"S1\".", "engine", 14);
  };
  EXPECT_EQ(OpenFails(), (Told{failure::kServerNotFound, "There is no server \"S1\"."}));
  ExpectClosed();
  journal.duringOpen = [](std::stop_token) {};
  Open();
  EXPECT_TRUE(cn->IsOpen());
}

TEST_F(ConnectionTest, a_failed_close_leaves_it_open) {
  Open();
  journal.duringClose = [] { throw platform::Failure(failure::kStorage, "Disk full."); };
  EXPECT_EQ(FailureOf([&] { cn->Close(); }), (Told{failure::kStorage, "Disk full."}));
  EXPECT_TRUE(cn->IsOpen());
  journal.duringClose = [] {};
  cn->Close();
  EXPECT_FALSE(cn->IsOpen());
}

TEST_F(ConnectionTest, destroying_an_open_connection_closes_it) {
  Open();
  cn.reset();
  EXPECT_EQ(journal.calls, (std::vector<Text>{"Open", "Close", "~Session"}));
}

TEST_F(ConnectionTest, destroying_survives_a_failed_close) {
  Open();
  journal.duringClose = [] { throw platform::Failure(failure::kStorage, "Disk full."); };
  cn.reset();
  EXPECT_EQ(journal.calls.back(), "~Session");
}

TEST_F(ConnectionTest, destroying_a_closed_connection_closes_nothing) {
  cn.reset();
  EXPECT_TRUE(journal.calls.empty());
}

TEST_F(ConnectionTest, slow_calls_run_through_the_hosts_long_operation) {
  std::vector<std::thread::id> threads;
  const auto note = [&](std::stop_token) { threads.push_back(std::this_thread::get_id()); };
  journal.duringOpen = note;
  journal.duringExecute = note;
  Open();
  cn->OpenSchema(SchemaNumber::Tables);
  cn->Execute({"SELECT 1"});
  EXPECT_EQ(longOperation->what,
            (std::vector<Text>{"Connecting to S1", "Reading what the server holds",
                               "Running the statement"}));
  ASSERT_EQ(threads.size(), 3U);
  for (const auto thread : threads) EXPECT_NE(thread, std::this_thread::get_id());
}

TEST_F(ConnectionTest, open_can_be_cancelled_while_it_waits) {
  journal.duringOpen = tests::WaitForCancel;
  longOperation->bCancel = true;
  EXPECT_EQ(OpenFails().lNumber, failure::kCancelled);
  ExpectClosed();
}

TEST_F(ConnectionTest, statements_and_schemas_can_be_cancelled_and_leave_it_open) {
  Open();
  journal.duringExecute = tests::WaitForCancel;
  longOperation->bCancel = true;
  EXPECT_EQ(FailureOf([&] { cn->Execute({"SELECT 1"}); }).lNumber, failure::kCancelled);
  EXPECT_EQ(FailureOf([&] { cn->OpenSchema(SchemaNumber::Tables); }).lNumber, failure::kCancelled);
  EXPECT_TRUE(cn->IsOpen());
}

TEST_F(ConnectionTest, passes_schema_number_and_restrictions_on) {
  Open();
  const std::vector<Value> vtRestrictions = {"Machine", {}, "Data"};
  const auto rs = cn->OpenSchema(SchemaNumber::PrimaryKeys, vtRestrictions);
  EXPECT_TRUE(rs->Fields().Item("NUMBER").Value() == Value(28));
  EXPECT_TRUE(journal.vtRestrictions == vtRestrictions);
}

TEST_F(ConnectionTest, a_recordset_stays_usable_after_the_connection_is_gone) {
  Open();
  const auto rs = cn->Execute({"SELECT 1"}).recordset;
  cn->Close();
  cn.reset();
  EXPECT_TRUE(rs->Fields().Item("A").Value() == Value(1));
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
}

}  // namespace
}  // namespace orvane::ado
