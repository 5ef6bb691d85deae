// A transport that lies in a module of its own, which is loaded with the first transfer: the network library
// and all that it needs would otherwise be a part of every start. Owned by the composition root.
#pragma once

#include <memory>
#include <mutex>

#include "platform/https_transport.h"

namespace orlix {

class LoadedHttpsTransport : public HttpsTransport {
  public:
    /// `modulePath` is the module; without it every transfer ends with the loader's error.
    explicit LoadedHttpsTransport(QString modulePath) : modulePath_(std::move(modulePath)) {}

    /// Where the module of the program in `programFolder` is.
    static QString defaultModulePath(const QString& programFolder);

    HttpResponse fetch(const QUrl& url, qint64 limit) override;
    HttpResponse download(const QUrl& url, const QString& path, qint64 limit) override;
    void cancel() override;

  private:
    /// Null, with `error` set, when it cannot be had.
    HttpsTransport* loaded(QString& error);

    QString modulePath_;
    std::mutex mutex_;  // of what follows
    bool isCancelled_ = false;
    std::unique_ptr<HttpsTransport> transport_;
};

}  // namespace orlix
