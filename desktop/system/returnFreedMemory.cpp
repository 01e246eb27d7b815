#include "desktop/system/returnFreedMemory.h"

#include <cstdlib> // names the C library

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace velmorant {

void returnFreedMemory() {
#ifdef __GLIBC__
    constexpr int large = 128 * 1024; // bytes; setting either of them also keeps it where it is
    mallopt(M_MMAP_THRESHOLD, large);
    mallopt(M_TRIM_THRESHOLD, large);
#endif
}

} // namespace velmorant
