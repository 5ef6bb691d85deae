#include "platform/qt/qt_https_transport.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTimer>
#include <algorithm>
#include <array>
#include <functional>
#include <memory>

#include "platform/post.h"

namespace orlix {
namespace {

constexpr qint64 bufferSize = 256 * 1024;  // bytes that may wait to be read

bool isRedirection(int status) {
    return status >= 300 && status <= 399;
}

// Whether it was the network that failed, and not the server that answered something unwelcome: the library
// makes errors of both.
bool isNetworkFailure(QNetworkReply::NetworkError error, int status) {
    if (error == QNetworkReply::NoError) return false;
    const bool isRefusedRedirection =
        error == QNetworkReply::TooManyRedirectsError || error == QNetworkReply::InsecureRedirectError;
    if (isRefusedRedirection) return !isRedirection(status);
    const bool isAboutContent = error >= QNetworkReply::ContentAccessDenied;
    return !isAboutContent || status == 0 || isSuccess(status);
}

QString timedOut() {
    return QStringLiteral("The request timed out.");
}

QString programEnds() {
    return QStringLiteral("The program is about to end.");
}

QNetworkRequest requestFor(const QUrl& url, const std::optional<QList<QSslCertificate>>& authorities) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    // From one secure address to another, never to a plain one.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // Otherwise the library unpacks silently, and the bytes are not those of the file.
    request.setRawHeader("Accept-Encoding", "identity");
    if (authorities) {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setCaCertificates(*authorities);
        request.setSslConfiguration(tls);
    }
    return request;
}

}  // namespace

// One request with an event loop of its own, on the calling thread.
class QtHttpsTransport::Transfer {
  public:
    /// Takes bytes of the body; an error in words ends the transfer.
    using Sink = std::function<QString(const char* bytes, qint64 size)>;
    enum class Limit { whole, standstill };

    Transfer(QtHttpsTransport& transport, Limit limit, std::chrono::milliseconds duration, qint64 bytes,
             Sink sink)
        : transport_(transport), limit_(limit), byteLimit_(bytes), sink_(std::move(sink)) {
        timer_.setSingleShot(true);
        timer_.setInterval(duration);
    }

    HttpResponse run(const QUrl& url) {
        QElapsedTimer elapsed;
        elapsed.start();
        response_.error = transport_.lookUp(url, timer_.intervalAsDuration());
        if (!response_.error.isEmpty()) return response_;
        if (limit_ == Limit::whole) {
            const auto left = timer_.intervalAsDuration() - std::chrono::milliseconds(elapsed.elapsed());
            timer_.setInterval(std::max(left, std::chrono::milliseconds(0)));
        }

        QNetworkAccessManager manager;
        reply_.reset(manager.get(requestFor(url, transport_.settings_.authorities)));
        reply_->setReadBufferSize(bufferSize);
        QObject::connect(reply_.get(), &QNetworkReply::metaDataChanged, &loop_, [this] { judgeStatus(); });
        QObject::connect(reply_.get(), &QNetworkReply::readyRead, &loop_, [this] { read(); });
        QObject::connect(reply_.get(), &QNetworkReply::finished, &loop_, [this] { loop_.quit(); });
        QObject::connect(&timer_, &QTimer::timeout, &loop_, [this] { stop(timedOut()); });
        timer_.start();
        transport_.begin(loop_);
        if (!reply_->isFinished()) loop_.exec();
        transport_.end(loop_);
        finish();
        reply_.reset();
        return response_;
    }

  private:
    int status() const { return reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(); }

    // Nobody wants the body of a refusal. A redirection is followed, or ends by itself.
    void judgeStatus() {
        progress();
        if (!isSuccess(status()) && !isRedirection(status())) stop({});
    }

    void read() {
        if (isStopped_ || !isSuccess(status())) return;
        std::array<char, 65536> bytes{};
        for (;;) {
            const qint64 count = reply_->read(bytes.data(), static_cast<qint64>(bytes.size()));
            if (count <= 0) break;
            received_ += count;
            const QString error = sink_(bytes.data(), count);
            response_.isTooLong = received_ > byteLimit_;
            if (response_.isTooLong || !error.isEmpty()) return stop(error);
        }
        progress();
    }

    void progress() {
        if (limit_ == Limit::standstill) timer_.start();
    }

    void stop(const QString& error) {
        if (isStopped_) return;
        isStopped_ = true;
        response_.error = error;
        loop_.quit();
    }

    void finish() {
        if (!reply_->isFinished() && !isStopped_) stop(programEnds());
        read();
        response_.status = status();
        response_.finalUrl = reply_->url();
        if (!isStopped_ && isNetworkFailure(reply_->error(), response_.status))
            response_.error = reply_->errorString();
        reply_->disconnect();
        reply_->abort();
    }

    QtHttpsTransport& transport_;
    Limit limit_;
    qint64 byteLimit_;
    Sink sink_;
    QEventLoop loop_;
    QTimer timer_;
    std::unique_ptr<QNetworkReply> reply_;
    qint64 received_ = 0;
    bool isStopped_ = false;
    HttpResponse response_;
};

HttpResponse QtHttpsTransport::fetch(const QUrl& url, qint64 limit) {
    QByteArray body;
    Transfer transfer(*this, Transfer::Limit::whole, settings_.fetchLimit, limit,
                      [&](const char* bytes, qint64 size) {
                          body.append(bytes, size);
                          return QString();
                      });
    HttpResponse response = transfer.run(url);
    response.body = body;
    return response;
}

HttpResponse QtHttpsTransport::download(const QUrl& url, const QString& path, qint64 limit) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        HttpResponse response;
        response.error = file.errorString();
        return response;
    }
    Transfer transfer(*this, Transfer::Limit::standstill, settings_.standstillLimit, limit,
                      [&](const char* bytes, qint64 size) {
                          return file.write(bytes, size) == size ? QString() : file.errorString();
                      });
    return transfer.run(url);
}

QString QtHttpsTransport::lookUp(const QUrl& url, std::chrono::milliseconds limit) {
    NameLookup lookup(url.host(QUrl::FullyEncoded).toStdString());
    {
        const std::lock_guard lock(mutex_);
        if (isCancelled_) return programEnds();
        lookups_.insert(&lookup);
    }
    const bool isAnswered = lookup.wait(limit);
    const std::lock_guard lock(mutex_);
    lookups_.remove(&lookup);
    if (isCancelled_) return programEnds();
    return isAnswered ? QString() : timedOut();
}

void QtHttpsTransport::begin(QEventLoop& loop) {
    const std::lock_guard lock(mutex_);
    loops_.insert(&loop);
    if (isCancelled_) post(&loop, [&loop] { loop.quit(); });
}

void QtHttpsTransport::end(QEventLoop& loop) {
    const std::lock_guard lock(mutex_);
    loops_.remove(&loop);
}

void QtHttpsTransport::cancel() {
    const std::lock_guard lock(mutex_);
    isCancelled_ = true;
    for (NameLookup* lookup : lookups_)
        lookup->cancel();
    for (QEventLoop* loop : loops_)
        post(loop, [loop] { loop->quit(); });
}

}  // namespace orlix
