#include "ado/parameters.h"

#include <gtest/gtest.h>

#include "ado/command.h"
#include "platform/failure.h"

namespace orvane::ado {
namespace {

using platform::DataType;
using platform::Failure;
using platform::ParameterDirection;
using platform::Value;

platform::Long NumberOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.Number();
  }
  return 0;
}

TEST(Parameters, keeps_what_was_appended_in_order_and_by_name) {
  Command command;
  command.Parameters().Append(
      command.CreateParameter("Tag", DataType::WChar, ParameterDirection::Input, 0, "TI-1"));
  command.Parameters().Append(
      command.CreateParameter("Value", DataType::Double, ParameterDirection::Input, 0, 2.5));
  ASSERT_EQ(command.Parameters().Count(), 2);
  EXPECT_EQ(command.Parameters().Item("VALUE")->Value(), Value(2.5));
  EXPECT_EQ(command.Parameters().Item(0)->Name(), "Tag");
  EXPECT_EQ(command.Parameters().Values(), (std::vector<Value>{"TI-1", 2.5}));
  command.Parameters().Clear();
  EXPECT_EQ(command.Parameters().Count(), 0);
}

TEST(Parameters, fails_for_one_that_is_not_there) {
  Parameters parameters;
  EXPECT_EQ(NumberOf([&] { parameters.Item("x"); }), platform::failure::kItemNotFound);
  EXPECT_EQ(NumberOf([&] { parameters.Item(0); }), platform::failure::kItemNotFound);
  EXPECT_EQ(NumberOf([&] { parameters.Item(-1); }), platform::failure::kItemNotFound);
}

TEST(Parameters, takes_no_parameter_of_another_layer) {
  Parameters parameters;
  EXPECT_EQ(NumberOf([&] { parameters.Append(nullptr); }), platform::failure::kInvalidArgument);
  EXPECT_EQ(parameters.Count(), 0);
}

TEST(Parameters, refuses_an_object_and_what_is_longer_than_the_size) {
  Parameter parameter("Tag", DataType::WChar, 4, "TI-1");
  EXPECT_EQ(NumberOf([&] { parameter.Value("TI-11"); }), platform::failure::kInvalidArgument);
  EXPECT_EQ(NumberOf([&] { parameter.Value(Value(std::make_shared<Command>())); }),
            platform::failure::kTypeMismatch);
  EXPECT_EQ(parameter.Value(), Value("TI-1"));
  EXPECT_EQ(NumberOf([] {
              Command().CreateParameter("a", DataType::WChar, ParameterDirection::Input, -1, "");
            }),
            platform::failure::kInvalidArgument);
}

}  // namespace
}  // namespace orvane::ado
