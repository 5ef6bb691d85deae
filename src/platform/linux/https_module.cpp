#include "platform/linux/https_module.h"

#include "platform/qt/qt_https_transport.h"

extern "C" __attribute__((visibility("default"))) orlix::HttpsTransport* orlixMakeHttpsTransport() {
    return new orlix::QtHttpsTransport;
}
