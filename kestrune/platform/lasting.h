#pragma once

namespace kestrune::platform {

/// A process-wide object that is never destroyed. Exit handlers, destructors of static objects and threads that still
/// run may call the library as long as it is loaded. A function with [[gnu::destructor]], which runs when the library
/// is unloaded and so after all of those, releases what the object holds.
template <class T>
class Lasting {
public:
  constexpr Lasting() : m_object() {}
  Lasting(const Lasting &) = delete;
  Lasting &operator=(const Lasting &) = delete;
  ~Lasting() {}

  T *operator->() { return &m_object; }

private:
  union {
    T m_object;
  };
};

} // namespace kestrune::platform
