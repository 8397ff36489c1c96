#include "tests/faults/fault_driver.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>

// Replaces the memory functions of the whole process: the parser, the conversion of encodings and the C library use
// them too.

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void *block);
}

namespace {

class AllocationFault : public faults::Fault {
public:
  std::string name() const override { return "allocations"; }
  void arm(long number, bool forEver) override {
    m_left = number;
    m_forEver = forEver;
    m_fired = false;
  }
  bool disarm() override {
    m_left = 0;
    return m_fired;
  }
  long liveBlocks() const override { return m_live; }

  bool fails() {
    if (m_left == 0)
      return false;
    if (m_left > 1) {
      --m_left;
      return false;
    }
    if (!m_forEver)
      m_left = 0;
    m_fired = true;
    errno = ENOMEM;
    return true;
  }
  void *counted(void *block) {
    if (block != nullptr)
      ++m_live;
    return block;
  }
  void freed(const void *block) {
    if (block != nullptr)
      --m_live;
  }

private:
  long m_left = 0; // 1: the next call fails
  bool m_forEver = false;
  bool m_fired = false;
  long m_live = 0;
};

constinit AllocationFault fault;

} // namespace

extern "C" {

void *malloc(std::size_t size) { return fault.fails() ? nullptr : fault.counted(__libc_malloc(size)); }

void *calloc(std::size_t count, std::size_t size) {
  return fault.fails() ? nullptr : fault.counted(__libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size) {
  if (block == nullptr)
    return malloc(size);
  return fault.fails() ? nullptr : __libc_realloc(block, size);
}

void *memalign(std::size_t alignment, std::size_t size) {
  return fault.fails() ? nullptr : fault.counted(__libc_memalign(alignment, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void **block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block != nullptr ? 0 : ENOMEM;
}

void free(void *block) {
  fault.freed(block);
  __libc_free(block);
}

} // extern "C"

int main() { return faults::Run({&fault}); }
