#include <sys/mman.h>

#include <cstdlib>
#include <new>

#include "pokermath/support.h"

namespace pokermath {

namespace {
constexpr size_t kHugePage = size_t{2} << 20;
}

void* allocate_table_memory(size_t bytes) {
  if (bytes < kHugePage) {
    if (void* p = std::malloc(bytes == 0 ? 1 : bytes)) return p;
    throw std::bad_alloc();
  }
  const size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
  void* p = std::aligned_alloc(kHugePage, rounded);
  if (!p) throw std::bad_alloc();
  ::madvise(p, rounded, MADV_HUGEPAGE);  // a hint: without huge pages the table works the same
  return p;
}

void free_table_memory(void* memory) { std::free(memory); }

}  // namespace pokermath
