#pragma once

namespace kestrune::platform {

/// An object of the process that no destructor ends. Exit handlers, destructors of static objects and threads that
/// still run may call the library for as long as it is loaded. What the object holds is given back by a function with
/// [[gnu::destructor]], which runs when the library is unloaded, behind all of those.
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
