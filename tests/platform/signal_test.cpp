#include "platform/signal.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace orvane::platform {
namespace {

TEST(signal, calls_its_handlers_in_the_order_of_connection) {
  Signal<int> signal;
  std::vector<int> calls;
  const Subscription first = signal.Connect([&](int i) { calls.push_back(i); });
  const Subscription second = signal.Connect([&](int i) { calls.push_back(i * 10); });
  signal.Raise(1);
  EXPECT_EQ(calls, (std::vector<int>{1, 10}));
}

TEST(signal, does_not_call_a_handler_whose_subscription_was_dropped) {
  Signal<> signal;
  int nCalls = 0;
  {
    const Subscription subscription = signal.Connect([&] { ++nCalls; });
  }
  signal.Raise();
  EXPECT_EQ(nCalls, 0);
}

TEST(signal, does_not_call_a_handler_dropped_by_an_earlier_one) {
  Signal<> signal;
  int nCalls = 0;
  Subscription second;
  const Subscription first = signal.Connect([&] { second.Drop(); });
  second = signal.Connect([&] { ++nCalls; });
  signal.Raise();
  EXPECT_EQ(nCalls, 0);
}

TEST(signal, does_not_call_a_handler_connected_while_it_is_raised) {
  Signal<> signal;
  int nCalls = 0;
  Subscription late;
  const Subscription first = signal.Connect([&] {
    if (!late.Connected()) late = signal.Connect([&] { ++nCalls; });
  });
  signal.Raise();
  EXPECT_EQ(nCalls, 0);
  signal.Raise();
  EXPECT_EQ(nCalls, 1);
}

TEST(signal, its_publisher_may_die_in_its_own_notification) {
  auto signal = std::make_unique<Signal<>>();
  int nCalls = 0;
  const Subscription first = signal->Connect([&] { signal.reset(); });
  const Subscription second = signal->Connect([&] { ++nCalls; });
  signal->Raise();
  EXPECT_EQ(nCalls, 1);
}

TEST(signal, a_subscription_may_outlive_its_signal) {
  Subscription subscription;
  {
    Signal<> signal;
    subscription = signal.Connect([] {});
  }
  EXPECT_TRUE(subscription.Connected());
  subscription.Drop();
  EXPECT_FALSE(subscription.Connected());
}

}  // namespace
}  // namespace orvane::platform
