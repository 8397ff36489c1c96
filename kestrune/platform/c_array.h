#pragma once

#include "kestrune/platform/exceptions.h"

#include <vector>

/// The platform's array: ordered, grows at the end, closes gaps on removal. A bad index throws CInvalidArgException*.
template <class TYPE, class ARG_TYPE = const TYPE &>
class CArray {
public:
  /// The number of elements. @{
  int GetCount() const { return static_cast<int>(m_elements.size()); }
  int GetSize() const { return GetCount(); }
  ///@}

  /// The element at `index`, owned by the array until it changes. A bad index throws CInvalidArgException*. @{
  const TYPE &GetAt(int index) const { return m_elements[checked(index)]; }
  TYPE &ElementAt(int index) { return m_elements[checked(index)]; }
  const TYPE &operator[](int index) const { return GetAt(index); }
  TYPE &operator[](int index) { return ElementAt(index); }
  ///@}

  /// Appends a copy and returns its index.
  int Add(ARG_TYPE element) {
    m_elements.push_back(element);
    return GetCount() - 1;
  }

  /// Removes the element at `index` and closes the gap. A bad index throws CInvalidArgException*.
  void RemoveAt(int index) { m_elements.erase(m_elements.begin() + static_cast<std::ptrdiff_t>(checked(index))); }
  /// Removes all elements.
  void RemoveAll() { m_elements.clear(); }

private:
  std::size_t checked(int index) const {
    if (index < 0 || index >= GetCount())
      AfxThrowInvalidArgException();
    return static_cast<std::size_t>(index);
  }

  std::vector<TYPE> m_elements;
};
