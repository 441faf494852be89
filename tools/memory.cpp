#include "tools/memory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace tavrel::tools {

void PrepareMemory() {
#ifdef __GLIBC__
    constexpr int LargestHeapBlock = 64 << 20;
    constexpr int MostKept = 1 << 30;
    constexpr int HeapStep = 4 << 20;
    mallopt(M_MMAP_THRESHOLD, LargestHeapBlock);
    mallopt(M_TRIM_THRESHOLD, MostKept);
    mallopt(M_TOP_PAD, HeapStep);
#endif
}

}  // namespace tavrel::tools
