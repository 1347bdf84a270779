// Finding an item in a keyed list by key and by position, filling and emptying it, in lists of ten
// to a million, against std::unordered_map, std::vector and std::list holding the same. Both are
// timed in turns within each measurement; "times_raw" is the ratio, "ns_each" the list's time for
// one item.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "nodes/keyed_list.h"
#include "nodes/node_enumerator.h"

namespace {

using orvane::nodes::KeyedList;
using orvane::nodes::NodeEnumerator;
using orvane::platform::Long;
using orvane::platform::Text;
using orvane::platform::Value;

using Item = std::shared_ptr<Text>;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kLookups = 10'000;

/// A list, and the same items as bare containers.
struct Lists {
  explicit Lists(std::int64_t nItems) {
    raw.reserve(static_cast<std::size_t>(nItems));
    for (std::int64_t i = 0; i < nItems; ++i) {
      keys.push_back("Plant.Area" + std::to_string(i % 17) + ".Tag" + std::to_string(i));
      auto item = std::make_shared<Text>(keys.back());
      list->Add(keys.back(), item);
      raw.emplace(keys.back(), item);
      order.push_back(std::move(item));
    }
    std::mt19937 random(1);
    std::uniform_int_distribution<std::size_t> any(0, keys.size() - 1);
    for (std::size_t i = 0; i < kLookups; ++i) wanted.emplace_back(keys[any(random)]);
  }

  std::vector<Text> keys;
  std::vector<Value> wanted;
  std::shared_ptr<KeyedList<Text>> list = std::make_shared<KeyedList<Text>>();
  std::unordered_map<Text, Item> raw;
  std::vector<Item> order;
};

template <class Work>
double Seconds(Work&& work) {
  const auto begin = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// Times the list's way and the raw one in turns.
template <class ListWork, class RawWork>
void Compare(benchmark::State& state, double dItems, ListWork&& listWork, RawWork&& rawWork) {
  double dList = 0;
  double dRaw = 0;
  for ([[maybe_unused]] const auto& turn : state) {
    const double dTurn = Seconds(listWork);
    dRaw += Seconds(rawWork);
    dList += dTurn;
    state.SetIterationTime(dTurn);
  }
  state.counters["times_raw"] = dList / dRaw;
  state.counters["ns_each"] = dList / static_cast<double>(state.iterations()) / dItems * 1e9;
}

void ByKey(benchmark::State& state) {
  const Lists lists(state.range(0));
  Compare(
      state, kLookups,
      [&] {
        for (const Value& vtKey : lists.wanted) {
          benchmark::DoNotOptimize(lists.list->Item(vtKey).get());
        }
      },
      [&] {
        for (const Value& vtKey : lists.wanted) {
          benchmark::DoNotOptimize(lists.raw.find(*vtKey.As<Text>())->second.get());
        }
      });
}

void ByPosition(benchmark::State& state) {
  const Lists lists(state.range(0));
  const auto nItems = static_cast<double>(lists.order.size());
  Compare(
      state, nItems,
      [&] {
        for (Long i = 1; i <= lists.list->Count(); ++i) {
          benchmark::DoNotOptimize(lists.list->Item(i)->data());
        }
      },
      [&] {
        for (const Item& item : lists.order) benchmark::DoNotOptimize(item->data());
      });
}

void ByWalk(benchmark::State& state) {
  const Lists lists(state.range(0));
  const auto nItems = static_cast<double>(lists.order.size());
  Compare(
      state, nItems,
      [&] {
        for (const Item& item : NodeEnumerator<Text>(lists.list)) {
          benchmark::DoNotOptimize(item->data());
        }
      },
      [&] {
        for (const Item& item : lists.order) benchmark::DoNotOptimize(item->data());
      });
}

/// Items put in before the first one, and taken out again by their keys.
void AtTheFront(benchmark::State& state) {
  const Lists lists(state.range(0));
  std::list<const Item*> raw;
  Compare(
      state, static_cast<double>(lists.order.size()),
      [&] {
        KeyedList<Text> list;
        list.Add("last", lists.order.front());
        for (const Text& sKey : lists.keys) list.Insert(sKey, lists.order.front(), 1);
        for (const Text& sKey : lists.keys) list.Remove(sKey);
      },
      [&] {
        std::unordered_map<Text, std::list<const Item*>::iterator> index;
        for (const Text& sKey : lists.keys) {
          raw.push_front(&lists.order.front());
          index.emplace(sKey, raw.begin());
        }
        for (const Text& sKey : lists.keys) raw.erase(index.find(sKey)->second);
      });
}

constexpr std::int64_t kSizes[] = {10, 1'000, 100'000, 1'000'000};

void Sizes(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t nItems : kSizes) benchmark->Arg(nItems);
  benchmark->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(ByKey)->Apply(Sizes);
BENCHMARK(ByPosition)->Apply(Sizes);
BENCHMARK(ByWalk)->Apply(Sizes);
BENCHMARK(AtTheFront)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
