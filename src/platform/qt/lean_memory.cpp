#include "platform/qt/lean_memory.h"

#include <QPixmapCache>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orlix {

void keepMemoryLean() {
    QPixmapCache::setCacheLimit(pictureCacheKib);
#ifdef __GLIBC__
    // Setting either ends the library's habit of raising both with the largest block that was ever freed.
    mallopt(M_MMAP_THRESHOLD, ownPagesFrom);
    mallopt(M_TRIM_THRESHOLD, ownPagesFrom);
#endif
}

}  // namespace orlix
