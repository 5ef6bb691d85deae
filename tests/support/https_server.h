// A real HTTPS server on the loopback interface, with a thread of its own, that answers each path as the test
// says, also badly. Owned by the test.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>
#include <memory>
#include <utility>

#include "support/certificates.h"

namespace orlix::test {

struct Answer {
    enum class Ending {
        close,       ///< what a good server does
        reset,       ///< breaks the connection
        standStill,  ///< says nothing more and keeps the connection
        repeat       ///< sends the body over and over until the client leaves
    };

    int status = 200;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// What the header says of the length: the truth when negative, nothing when 0.
    qint64 claimedLength = -1;
    Ending ending = Ending::close;
    /// The body goes out in so many pieces, with a pause after each.
    int pieces = 1;
    int pauseMs = 0;

    static Answer redirection(const QString& to, int status = 302);
};

class HttpsServer {
  public:
    struct Request {
        QByteArray path;
        QList<std::pair<QByteArray, QByteArray>> headers;  ///< names in lower case

        QByteArray header(const QByteArray& name) const;
    };

    explicit HttpsServer(const ServerIdentity& identity);
    ~HttpsServer();
    HttpsServer(const HttpsServer&) = delete;
    HttpsServer& operator=(const HttpsServer&) = delete;

    /// From the next request on. Other paths are answered with 404 and a page.
    void answer(const QString& path, const Answer& answer);

    quint16 port() const;
    /// `host` is a name or address of the loopback interface, without brackets.
    QUrl url(const QString& path, const QString& host = QStringLiteral("localhost")) const;

    QList<Request> requests() const;
    /// Bytes of bodies that were handed to connections so far.
    qint64 bytesSent() const;

  private:
    class Worker;
    std::unique_ptr<Worker> worker_;
};

}  // namespace orlix::test
