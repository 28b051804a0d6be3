#pragma once

#include <sys/mman.h>

#include <cstdlib>
#include <new>
#include <utility>

namespace tavlo::test {

/// One object that this process has in common with all that it forks while the object lives.
template <typename T>
class SharedMemory {
 public:
  template <typename... Arguments>
  explicit SharedMemory(Arguments&&... arguments) {
    void* const memory =
        ::mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) std::abort();
    object_ = new (memory) T(std::forward<Arguments>(arguments)...);
  }
  ~SharedMemory() { ::munmap(object_, sizeof(T)); }
  SharedMemory(const SharedMemory&) = delete;

  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }

 private:
  T* object_;
};

}  // namespace tavlo::test
