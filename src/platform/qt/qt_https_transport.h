// HTTPS through Qt's network module. Nothing of it is set up before the first transfer. Owned by the
// composition root.
#pragma once

#include <QList>
#include <QSet>
#include <QSslCertificate>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

#include "platform/https_transport.h"
#include "platform/posix/name_lookup.h"

class QEventLoop;

namespace orlix {

class QtHttpsTransport : public HttpsTransport {
  public:
    struct Settings {
        /// Who may vouch for a server; the system's authorities when absent.
        std::optional<QList<QSslCertificate>> authorities;
        std::chrono::milliseconds fetchLimit = std::chrono::seconds(15);       ///< for the whole of a fetch
        std::chrono::milliseconds standstillLimit = std::chrono::seconds(60);  ///< of a download
    };

    QtHttpsTransport() : QtHttpsTransport(Settings{}) {}
    explicit QtHttpsTransport(Settings settings) : settings_(std::move(settings)) {}

    HttpResponse fetch(const QUrl& url, qint64 limit) override;
    HttpResponse download(const QUrl& url, const QString& path, qint64 limit) override;
    void cancel() override;

  private:
    class Transfer;

    /// Nothing when the host was looked up within `limit`, else the error in words.
    QString lookUp(const QUrl& url, std::chrono::milliseconds limit);
    void begin(QEventLoop& loop);
    void end(QEventLoop& loop);

    Settings settings_;
    std::mutex mutex_;
    bool isCancelled_ = false;
    QSet<QEventLoop*> loops_;    // of the transfers under way
    QSet<NameLookup*> lookups_;  // of those that have not begun
};

}  // namespace orlix
