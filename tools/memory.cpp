// The GNU library asks the system for each block above a size of its own choice and gives it back when it is freed. It
// is told to keep blocks of many megabytes in its heap, to let that heap grow by megabytes, and to give little back.
// Other libraries are left as they are.
#include "tools/memory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace tavrel::tools {

void PrepareMemory() {
#ifdef __GLIBC__
    constexpr int MaxHeapBlock = 64 << 20;
    constexpr int MaxKept = 1 << 30;
    constexpr int HeapStep = 4 << 20;
    mallopt(M_MMAP_THRESHOLD, MaxHeapBlock);
    mallopt(M_TRIM_THRESHOLD, MaxKept);
    mallopt(M_TOP_PAD, HeapStep);
#endif
}

}  // namespace tavrel::tools
