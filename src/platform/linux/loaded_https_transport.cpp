#include "platform/linux/loaded_https_transport.h"

#include <dlfcn.h>

#include <QFile>

#include "platform/linux/https_module.h"

namespace orlix {
namespace {

HttpResponse failed(const QString& error) {
    HttpResponse response;
    response.error = error;
    return response;
}

}  // namespace

QString LoadedHttpsTransport::defaultModulePath(const QString& programFolder) {
    return programFolder + QStringLiteral("/../lib/velmorandix-orlix/https.so");
}

// The module stays loaded for good: Qt's libraries do not survive being unloaded.
HttpsTransport* LoadedHttpsTransport::loaded(QString& error) {
    const std::lock_guard lock(mutex_);
    if (transport_) return transport_.get();
    void* module = dlopen(QFile::encodeName(modulePath_).constData(), RTLD_NOW | RTLD_LOCAL);
    void* function = module != nullptr ? dlsym(module, makeHttpsTransportName) : nullptr;
    if (function == nullptr) {
        error = QString::fromLocal8Bit(dlerror());
        return nullptr;
    }
    transport_.reset(reinterpret_cast<MakeHttpsTransport>(function)());
    if (isCancelled_) transport_->cancel();
    return transport_.get();
}

HttpResponse LoadedHttpsTransport::fetch(const QUrl& url, qint64 limit) {
    QString error;
    HttpsTransport* transport = loaded(error);
    return transport != nullptr ? transport->fetch(url, limit) : failed(error);
}

HttpResponse LoadedHttpsTransport::download(const QUrl& url, const QString& path, qint64 limit) {
    QString error;
    HttpsTransport* transport = loaded(error);
    return transport != nullptr ? transport->download(url, path, limit) : failed(error);
}

void LoadedHttpsTransport::cancel() {
    const std::lock_guard lock(mutex_);
    isCancelled_ = true;
    if (transport_) transport_->cancel();
}

}  // namespace orlix
