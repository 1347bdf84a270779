// Connections of a host that does not offer everything, and calls whose memory runs out.
#include <gtest/gtest.h>

#include <stdexcept>

#include "ado/command.h"
#include "tests/ado/connection_fakes.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::SchemaNumber;
using tests::FailureOf;
using tests::kString;
using tests::Told;
namespace failure = platform::failure;

class ConnectionHostTest : public tests::ConnectionUnderTest {};

TEST_F(ConnectionHostTest, works_where_it_is_called_when_the_host_has_no_long_operations) {
  cn = std::make_shared<Connection>(ConnectionServices{providers, prompt, nullptr});
  Open();
  EXPECT_TRUE(cn->IsOpen());
  EXPECT_EQ(cn->OpenSchema(SchemaNumber::Tables)->RecordCount(), 1);
  Command command;
  command.ActiveConnection(cn);
  EXPECT_EQ(command.Execute()->RecordCount(), 1);
  journal.duringExecute = [](const std::stop_token&) {
    throw platform::Failure(failure::kSqlError, "The statement is wrong.");
  };
  EXPECT_EQ(FailureOf([&] { command.Execute(); }),
            (Told{failure::kSqlError, "The statement is wrong."}));
  cn->Close();
}

TEST_F(ConnectionHostTest, asks_nobody_when_the_host_has_no_logon_dialog) {
  cn = std::make_shared<Connection>(ConnectionServices{providers, nullptr, longOperation});
  Open();
  cn->Close();
  Property("Prompt", platform::kPromptAlways);
  EXPECT_EQ(
      FailureOf([&] { Open(); }),
      (Told{failure::kNotSupported,
            "This program has no logon dialog: set \"Prompt\" to 4 and name server and user in "
            "the connection string."}));
  EXPECT_FALSE(cn->IsOpen());
}

TEST_F(ConnectionHostTest, finds_no_provider_when_the_host_has_none) {
  cn = std::make_shared<Connection>(ConnectionServices{nullptr, prompt, longOperation});
  cn->ConnectionString(kString);
  EXPECT_EQ(FailureOf([&] { Open(); }).lNumber, failure::kProviderNotFound);
}

TEST_F(ConnectionHostTest, tells_that_memory_ran_out_in_a_sentence) {
  Open();
  const Told expected{
      failure::kStorage,
      "There is not enough memory for the statement: set a row limit, or narrow it down."};
  Command command;
  command.ActiveConnection(cn);
  journal.duringExecute = [](const std::stop_token&) { throw std::bad_alloc(); };
  EXPECT_EQ(FailureOf([&] { command.Execute(); }), expected);
  EXPECT_EQ(FailureOf([&] { cn->OpenSchema(SchemaNumber::Tables); }), expected);
  journal.duringExecute = [](const std::stop_token&) { throw std::length_error("too long"); };
  EXPECT_EQ(FailureOf([&] { command.Execute(); }), expected);
  EXPECT_TRUE(cn->IsOpen());
}

}  // namespace
}  // namespace orvane::ado
