#pragma once

#include <atomic>
#include <memory>
#include <mutex>

namespace kestrune::platform {

/// A function that the program may set, replace and remove at any time, from any thread. A caller keeps its own
/// reference during the call, so the function may even replace itself.
template <class Function>
class Hook {
public:
  /// An empty function removes the current one.
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
