#include "platform/linux/window_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <QBackingStore>
#include <QImage>
#include <QThreadPool>
#include <QWidget>
#include <cstddef>
#include <cstdint>

namespace orlix {

void provideWindowMemory(QWidget& window) {
    window.winId();  // creates the window of the display server
    QBackingStore* store = window.backingStore();
    if (store == nullptr) return;
    store->resize(window.size());
    store->beginPaint(QRegion());  // some platforms have no picture before
    const QPaintDevice* device = store->paintDevice();
    const auto* image = device != nullptr && device->devType() == QInternal::Image
                            ? static_cast<const QImage*>(device)
                            : nullptr;
    const uchar* bits = image != nullptr ? image->constBits() : nullptr;
    store->endPaint();
    if (bits == nullptr) return;
    const auto beforeBits =
        reinterpret_cast<std::uintptr_t>(bits) % static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    auto* firstPage = const_cast<uchar*>(bits - beforeBits);
    const std::size_t length = beforeBits + static_cast<std::size_t>(image->sizeInBytes());
    // Nothing is written, so it may run beside the painting, and it fails where the memory has gone meanwhile
    // or the kernel (before 5.14) does not know the request.
    QThreadPool::globalInstance()->start(
        [firstPage, length] { madvise(firstPage, length, MADV_POPULATE_WRITE); });
}

}  // namespace orlix
