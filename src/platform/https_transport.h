// Fetches over HTTPS. Blocks until everything is there: worker threads only, any of them at the same time.
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace orlix {

/// What a transfer ended with.
struct HttpResponse {
    QString error;    ///< of the network, in words; empty when there was a response to the end
    int status = 0;   ///< of the response behind all redirects
    QUrl finalUrl;    ///< where that response came from
    QByteArray body;  ///< empty unless the status is one of success
    bool isTooLong = false;
};

/// Whether a status code is one of success.
inline bool isSuccess(int status) {
    return status >= 200 && status <= 299;
}

class HttpsTransport {
  public:
    virtual ~HttpsTransport() = default;

    /// Gets `url` past every cache, within 15 seconds. A body longer than `limit` bytes is not read to its
    /// end and counts as too long.
    virtual HttpResponse fetch(const QUrl& url, qint64 limit) = 0;

    /// Gets `url` into a new file at `path`, in constant memory. A transfer that stands still for 60 seconds
    /// ends with an error. A body longer than `limit` bytes is cut off soon after it and counts as too long;
    /// the file has what came until then. Whatever happens, the file is the caller's to remove.
    virtual HttpResponse download(const QUrl& url, const QString& path, qint64 limit) = 0;

    /// Ends the transfers under way and lets no other begin: the program wants to end.
    virtual void cancel() = 0;
};

}  // namespace orlix
