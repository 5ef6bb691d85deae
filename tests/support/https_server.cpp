#include "support/https_server.h"

#include <sys/socket.h>

#include <QHash>
#include <QPointer>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QThread>
#include <QTimer>
#include <mutex>
#include <stdexcept>

namespace orlix::test {
namespace {

constexpr qint64 enoughWaiting = 1024 * 1024;  // bytes that a connection may still have to send

void breakOff(QSslSocket& socket) {
    const linger noFarewell{1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &noFarewell,
               sizeof noFarewell);
    socket.abort();
}

HttpsServer::Request parsed(const QByteArray& head) {
    const QList<QByteArray> lines = head.trimmed().split('\n');
    HttpsServer::Request request;
    request.path = lines.constFirst().split(' ').value(1);
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append({line.left(colon).toLower().trimmed(), line.mid(colon + 1).trimmed()});
    }
    return request;
}

QByteArray headOf(const Answer& answer) {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + " Answer\r\nConnection: close\r\n";
    const qint64 length = answer.claimedLength < 0 ? answer.body.size() : answer.claimedLength;
    if (answer.claimedLength != 0) head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    for (const auto& [name, value] : answer.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

}  // namespace

Answer Answer::redirection(const QString& to, int status) {
    Answer answer;
    answer.status = status;
    answer.headers = {{"Location", to.toUtf8()}};
    return answer;
}

QByteArray HttpsServer::Request::header(const QByteArray& name) const {
    for (const auto& [known, value] : headers)
        if (known == name) return value;
    return {};
}

class HttpsServer::Worker : public QTcpServer {
  public:
    explicit Worker(const ServerIdentity& identity) {
        tls_ = QSslConfiguration::defaultConfiguration();
        tls_.setLocalCertificate(identity.certificate);
        tls_.setPrivateKey(identity.key);
        tls_.setPeerVerifyMode(QSslSocket::VerifyNone);
        if (!listen(QHostAddress::LocalHost)) throw std::runtime_error("no server on the loopback interface");
        port_ = serverPort();
        moveToThread(&thread_);
        thread_.start();
    }
    ~Worker() override {
        QMetaObject::invokeMethod(
            this,
            [this] {
                close();
                for (QSslSocket* socket : findChildren<QSslSocket*>())
                    delete socket;
                moveToThread(nullptr);
            },
            Qt::BlockingQueuedConnection);
        thread_.quit();
        thread_.wait();
    }

    void setAnswer(const QByteArray& path, const Answer& answer) {
        const std::lock_guard lock(mutex_);
        answers_.insert(path, answer);
    }
    QList<Request> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }
    qint64 bytesSent() const {
        const std::lock_guard lock(mutex_);
        return bytesSent_;
    }
    quint16 port() const { return port_; }

  protected:
    void incomingConnection(qintptr descriptor) override {
        auto* socket = new QSslSocket(this);
        socket->setSslConfiguration(tls_);
        connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QSslSocket::readyRead, socket, [this, socket] { receive(*socket); });
        socket->setSocketDescriptor(descriptor);
        socket->startServerEncryption();
    }

  private:
    // There is one request on each connection, and none has a body.
    void receive(QSslSocket& socket) {
        QByteArray& head = heads_[&socket];
        head += socket.readAll();
        if (!head.contains("\r\n\r\n")) return;
        const Request request = parsed(heads_.take(&socket));
        Answer answer;
        answer.status = 404;
        answer.body = "<html><body>There is nothing here.</body></html>";
        {
            const std::lock_guard lock(mutex_);
            requests_.append(request);
            answer = answers_.value(request.path, answer);
        }
        socket.write(headOf(answer));
        sendPiece(socket, answer, 0);
    }

    void sendPiece(QSslSocket& socket, const Answer& answer, int piece) {
        if (piece == answer.pieces) return end(socket, answer);
        const qsizetype size = answer.body.size() / answer.pieces;
        const bool isLast = piece + 1 == answer.pieces;
        const QByteArray bytes = answer.body.mid(piece * size, isLast ? -1 : size);
        socket.write(bytes);
        count(bytes.size());
        QTimer::singleShot(answer.pauseMs, &socket,
                           [this, &socket, answer, piece] { sendPiece(socket, answer, piece + 1); });
    }

    void end(QSslSocket& socket, const Answer& answer) {
        switch (answer.ending) {
            case Answer::Ending::close: return socket.disconnectFromHost();
            case Answer::Ending::reset: socket.flush(); return breakOff(socket);
            case Answer::Ending::standStill: return;
            case Answer::Ending::repeat:
                connect(&socket, &QSslSocket::encryptedBytesWritten, &socket,
                        [this, &socket, answer] { repeat(socket, answer); });
                return repeat(socket, answer);
        }
    }

    void repeat(QSslSocket& socket, const Answer& answer) {
        while (socket.state() == QAbstractSocket::ConnectedState &&
               socket.bytesToWrite() + socket.encryptedBytesToWrite() < enoughWaiting) {
            socket.write(answer.body);
            count(answer.body.size());
        }
    }

    void count(qint64 bytes) {
        const std::lock_guard lock(mutex_);
        bytesSent_ += bytes;
    }

    QThread thread_;
    QSslConfiguration tls_;
    quint16 port_ = 0;
    QHash<QSslSocket*, QByteArray> heads_;

    mutable std::mutex mutex_;  // of what follows
    QHash<QByteArray, Answer> answers_;
    QList<Request> requests_;
    qint64 bytesSent_ = 0;
};

HttpsServer::HttpsServer(const ServerIdentity& identity) : worker_(std::make_unique<Worker>(identity)) {}
HttpsServer::~HttpsServer() = default;

void HttpsServer::answer(const QString& path, const Answer& answer) {
    worker_->setAnswer(path.toUtf8(), answer);
}

quint16 HttpsServer::port() const {
    return worker_->port();
}

QUrl HttpsServer::url(const QString& path, const QString& host) const {
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(host);
    url.setPort(port());
    url.setPath(path);
    return url;
}

QList<HttpsServer::Request> HttpsServer::requests() const {
    return worker_->requests();
}

qint64 HttpsServer::bytesSent() const {
    return worker_->bytesSent();
}

}  // namespace orlix::test
