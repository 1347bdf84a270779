// Notification from one publisher to any number of listeners, on one thread.
// The signal is a private member of its publisher; listeners get a Subscription.
// Promises: the handlers are copied before the first is called; a handler whose subscription was
// dropped is not called; the publisher may be destroyed by one of its own handlers.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace orvane::platform {

/// Keeps one handler connected while it lives. Move-only; empty when default-made.
/// May outlive the signal.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> connection) : m_connection(std::move(connection)) {}
  Subscription(Subscription&&) noexcept = default;
  Subscription& operator=(Subscription&&) noexcept = default;
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() = default;

  void Drop() { m_connection.reset(); }
  bool Connected() const noexcept { return m_connection != nullptr; }

 private:
  std::shared_ptr<void> m_connection;
};

template <class... Args>
class Signal {
 public:
  using Handler = std::function<void(Args...)>;

  [[nodiscard]] Subscription Connect(Handler handler) {
    auto connection = std::make_shared<Handler>(std::move(handler));
    std::erase_if(m_handlers, [](const auto& weak) { return weak.expired(); });
    m_handlers.push_back(connection);
    return Subscription(std::move(connection));
  }

  /// Calls every connected handler in the order of connection.
  void Raise(Args... args) const {
    const auto handlers = m_handlers;
    for (const auto& weak : handlers) {
      if (const auto handler = weak.lock()) (*handler)(args...);
    }
  }

 private:
  std::vector<std::weak_ptr<Handler>> m_handlers;
};

}  // namespace orvane::platform
