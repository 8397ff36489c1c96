#pragma once

#include <atomic>
#include <memory>
#include <mutex>

namespace kestrune::platform {

/// A function that the program may set, exchange and take away at any time, from any thread. Whoever calls it holds it
/// for the call, so it may even exchange itself.
template <class Function>
class Hook {
public:
  /// An empty function takes it away.
  void set(Function function) {
    auto next = function ? std::make_shared<const Function>(std::move(function)) : nullptr;
    const std::lock_guard lock(m_guard);
    m_function.swap(next);
    m_isSet.store(m_function != nullptr, std::memory_order_release);
  }

  bool isSet() const { return m_isSet.load(std::memory_order_acquire); }

  /// The function, or null.
  std::shared_ptr<const Function> get() const {
    if (!isSet())
      return nullptr;
    const std::lock_guard lock(m_guard);
    return m_function;
  }

private:
  mutable std::mutex m_guard;
  std::shared_ptr<const Function> m_function;
  std::atomic<bool> m_isSet = false;
};

} // namespace kestrune::platform
