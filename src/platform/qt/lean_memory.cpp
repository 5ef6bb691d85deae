#include "platform/qt/lean_memory.h"

#include <QPixmapCache>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orlix {

LeanMemory::LeanMemory(QObject* parent) : QObject(parent) {
    QPixmapCache::setCacheLimit(pictureCacheKib);
#ifdef __GLIBC__
    // Setting either ends the library's habit of raising both with the largest block that was ever freed.
    mallopt(M_MMAP_THRESHOLD, ownPagesFrom);
    mallopt(M_TRIM_THRESHOLD, ownPagesFrom);
#endif
    timer_.setSingleShot(true);
    timer_.setInterval(returnAfterMs);
    connect(&timer_, &QTimer::timeout, this, [this] {
#ifdef __GLIBC__
        malloc_trim(0);
#endif
        Q_EMIT returned();
    });
}

void LeanMemory::returnSoon() {
    timer_.start();
}

}  // namespace orlix
