// The transport against a real server with certificates of the test's own.
#include "platform/qt/qt_https_transport.h"

#include <gmock/gmock.h>
#include <netdb.h>
#include <signal.h>
#include <sys/resource.h>

#include <QFile>
#include <QTcpServer>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "support/environment_guard.h"
#include "support/https_server.h"
#include "support/temporary_folder.h"

#if defined(__linux__)
// The looking up of hosts, as far as our own code asks for it: held up while the test wants it.
namespace {
std::mutex lookupMutex;
std::condition_variable lookupGoesOn;
bool isLookupHeld = false;
std::atomic<int> lookupsHeld = 0;
}  // namespace

extern "C" int __real_getaddrinfo(const char*, const char*, const addrinfo*, addrinfo**);
extern "C" int __wrap_getaddrinfo(const char* host, const char* service, const addrinfo* hints,
                                  addrinfo** result) {
    {
        std::unique_lock lock(lookupMutex);
        if (isLookupHeld) ++lookupsHeld;
        lookupGoesOn.wait(lock, [] { return !isLookupHeld; });
    }
    return __real_getaddrinfo(host, service, hints, result);
}
#endif

namespace orlix {
namespace {

using namespace std::chrono_literals;
using test::Answer;
using test::CertificateAuthority;
using test::HttpsServer;
using ::testing::HasSubstr;

constexpr qint64 large = 1024 * 1024;
const QString localhost = QStringLiteral("localhost");
const QString path = QStringLiteral("/updates/file");

QtHttpsTransport::Settings trusting(const CertificateAuthority& authority) {
    QtHttpsTransport::Settings settings;
    settings.authorities = {authority.certificate()};
    return settings;
}

Answer withBody(const QByteArray& body) {
    Answer answer;
    answer.body = body;
    return answer;
}

class QtHttpsTransportTest : public ::testing::Test {
  protected:
    HttpResponse fetch(const Answer& answer, qint64 limit = large) {
        server.answer(path, answer);
        return transport.fetch(server.url(path), limit);
    }
    HttpResponse download(const Answer& answer, qint64 limit = large) {
        server.answer(path, answer);
        return transport.download(server.url(path), filePath, limit);
    }
    QByteArray fileBytes() const {
        QFile file(filePath);
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    }

    test::TemporaryFolder folder;
    QString filePath = QString::fromStdString((folder / "download").string());
    CertificateAuthority authority;
    HttpsServer server{authority.issue({localhost, QStringLiteral("127.0.0.1")})};
    QtHttpsTransport transport{trusting(authority)};
};

TEST_F(QtHttpsTransportTest, bringsTheBodyAndSaysWhereItCameFrom) {
    const HttpResponse response = fetch(withBody("{\"version\": \"1.2\"}"));
    EXPECT_EQ(response.error, QString());
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, QByteArray("{\"version\": \"1.2\"}"));
    EXPECT_EQ(response.finalUrl, server.url(path));
    EXPECT_FALSE(response.isTooLong);
}

TEST_F(QtHttpsTransportTest, bringsAFileByteByByte) {
    QByteArray bytes;
    for (int i = 0; i < 700'000; ++i)
        bytes += static_cast<char>(i * 31 + i / 251);
    const HttpResponse response = download(withBody(bytes));
    EXPECT_EQ(response.error, QString());
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.finalUrl, server.url(path));
    EXPECT_FALSE(response.isTooLong);
    EXPECT_TRUE(fileBytes() == bytes);
    EXPECT_EQ(response.body, QByteArray()) << "the bytes are in the file only";
}

TEST_F(QtHttpsTransportTest, asksForTheBytesAsTheyAreAndPastEveryCache) {
    fetch(withBody("x"));
    download(withBody("x"));
    for (const HttpsServer::Request& request : server.requests()) {
        EXPECT_EQ(request.header("accept-encoding"), QByteArray("identity"));
        EXPECT_EQ(request.header("cache-control"), QByteArray("no-cache"));
    }
    EXPECT_EQ(server.requests().size(), 2);
}

TEST_F(QtHttpsTransportTest, aPackedBodyIsNotUnpacked) {
    const QByteArray packed = QByteArray::fromHex("1f8b0800000000000003cb48cdc9c9070086a6103605000000");
    Answer answer = withBody(packed);
    answer.headers = {{"Content-Encoding", "gzip"}};
    EXPECT_EQ(fetch(answer).body, packed);
    download(answer);
    EXPECT_EQ(fileBytes(), packed);
}

TEST_F(QtHttpsTransportTest, aBodyOfExactlyTheLimitIsWhole) {
    const QByteArray body(1000, 'x');
    HttpResponse response = fetch(withBody(body), 1000);
    EXPECT_FALSE(response.isTooLong);
    EXPECT_EQ(response.body, body);
    response = download(withBody(body), 1000);
    EXPECT_FALSE(response.isTooLong);
    EXPECT_EQ(fileBytes(), body);
}

TEST_F(QtHttpsTransportTest, aBodyLongerThanTheLimitIsTooLong) {
    HttpResponse response = fetch(withBody(QByteArray(1001, 'x')), 1000);
    EXPECT_TRUE(response.isTooLong);
    EXPECT_EQ(response.error, QString());
    EXPECT_EQ(response.status, 200);
    response = download(withBody(QByteArray(1001, 'x')), 1000);
    EXPECT_TRUE(response.isTooLong);
    EXPECT_EQ(fileBytes().size(), 1001) << "the file has what came";
}

Answer endless() {
    Answer answer = withBody(QByteArray(100'000, 'x'));
    answer.claimedLength = 0;
    answer.ending = Answer::Ending::repeat;
    return answer;
}

TEST_F(QtHttpsTransportTest, anEndlessBodyIsCutOffSoonAfterTheLimit) {
    EXPECT_TRUE(fetch(endless(), large).isTooLong);
    const HttpResponse response = download(endless(), large);
    EXPECT_TRUE(response.isTooLong);
    EXPECT_EQ(response.error, QString());
    EXPECT_GT(fileBytes().size(), large);
    EXPECT_LT(fileBytes().size(), large + 100'000);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // they keep what was freed
long highWaterKib() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST_F(QtHttpsTransportTest, aLongDownloadTakesLittleMemory) {
    download(endless(), large);  // what is needed once
    QFile::remove(filePath);
    const long before = highWaterKib();
    EXPECT_TRUE(download(endless(), 96 * large).isTooLong);
    EXPECT_LT(highWaterKib() - before, 24 * 1024);
}
#endif

TEST_F(QtHttpsTransportTest, whatTheServerRefusesIsNoErrorOfTheNetwork) {
    for (const int status : {204, 304, 400, 401, 403, 404, 407, 410, 418, 500, 501, 503, 599}) {
        SCOPED_TRACE(status);
        Answer answer = withBody(status == 204 || status == 304 ? "" : "<html>no</html>");
        answer.status = status;
        HttpResponse response = fetch(answer);
        EXPECT_EQ(response.error, QString());
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, QByteArray());
        response = download(answer);
        EXPECT_EQ(response.error, QString());
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(fileBytes(), QByteArray());
        QFile::remove(filePath);
    }
}

TEST_F(QtHttpsTransportTest, theBodyOfARefusalIsNotWaitedFor) {
    Answer answer = endless();
    answer.status = 404;
    EXPECT_EQ(fetch(answer).status, 404);
    EXPECT_EQ(download(answer).status, 404);
    EXPECT_EQ(fileBytes(), QByteArray());
}

TEST_F(QtHttpsTransportTest, redirectionsAreFollowedAndTheLastAddressIsTold) {
    const QUrl other = server.url(QStringLiteral("/c"), QStringLiteral("127.0.0.1"));
    server.answer(QStringLiteral("/b"), Answer::redirection(other.toString(), 307));
    server.answer(QStringLiteral("/c"), withBody("there"));
    const HttpResponse response = fetch(Answer::redirection(QStringLiteral("/b")));
    EXPECT_EQ(response.error, QString());
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.finalUrl, other);
    EXPECT_EQ(response.body, QByteArray("there"));
    EXPECT_EQ(download(Answer::redirection(QStringLiteral("/b"))).finalUrl, other);
    EXPECT_EQ(fileBytes(), QByteArray("there"));
}

TEST_F(QtHttpsTransportTest, aRedirectionToAPlainAddressIsNotFollowed) {
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    const QString to = QStringLiteral("http://localhost:%1/x").arg(plain.serverPort());
    for (const int status : {301, 302, 303, 307, 308}) {
        SCOPED_TRACE(status);
        const HttpResponse response = fetch(Answer::redirection(to, status));
        EXPECT_EQ(response.error, QString());
        EXPECT_EQ(response.status, status);
        EXPECT_EQ(response.body, QByteArray());
    }
    EXPECT_FALSE(plain.waitForNewConnection(0)) << "nobody asked the plain server";
}

TEST_F(QtHttpsTransportTest, redirectionsThatLeadNowhereEndAsSuch) {
    for (const char* to :
         {"file:///etc/hostname", "data:text/plain,x", "ftp://localhost/x", "https://", ""}) {
        SCOPED_TRACE(to);
        const HttpResponse response = fetch(Answer::redirection(QString::fromUtf8(to)));
        EXPECT_TRUE(response.status == 302 || !response.error.isEmpty());
        EXPECT_EQ(response.body, QByteArray());
    }
    const HttpResponse circle = fetch(Answer::redirection(path));
    EXPECT_EQ(circle.status, 302);
    EXPECT_EQ(circle.error, QString());
}

TEST_F(QtHttpsTransportTest, aBodyShorterThanSaidIsAnError) {
    Answer answer = withBody("half of");
    answer.claimedLength = 100;
    EXPECT_NE(fetch(answer).error, QString());
    EXPECT_NE(download(answer).error, QString());
    EXPECT_EQ(fileBytes(), QByteArray("half of"));
}

TEST_F(QtHttpsTransportTest, aBrokenConnectionIsAnError) {
    Answer answer = withBody(QByteArray(1000, 'x'));
    answer.claimedLength = 100'000;
    answer.ending = Answer::Ending::reset;
    EXPECT_NE(fetch(answer).error, QString());
    EXPECT_NE(download(answer).error, QString());
}

Answer standingStill(const QByteArray& body) {
    Answer answer = withBody(body);
    answer.claimedLength = 100'000;
    answer.ending = Answer::Ending::standStill;
    return answer;
}

TEST_F(QtHttpsTransportTest, aTransferThatStandsStillEndsWithAnError) {
    QtHttpsTransport::Settings settings = trusting(authority);
    settings.fetchLimit = 200ms;
    settings.standstillLimit = 200ms;
    QtHttpsTransport impatient(settings);
    server.answer(path, standingStill("some"));
    EXPECT_EQ(impatient.fetch(server.url(path), large).error, QStringLiteral("The request timed out."));
    EXPECT_EQ(impatient.download(server.url(path), filePath, large).error,
              QStringLiteral("The request timed out."));
}

TEST_F(QtHttpsTransportTest, aSlowDownloadMayTakeLongerThanTheLimitOfAStandstill) {
    QtHttpsTransport::Settings settings = trusting(authority);
    settings.standstillLimit = 4s;
    QtHttpsTransport patient(settings);
    Answer answer = withBody(QByteArray(20, 'x'));
    answer.pieces = 20;
    answer.pauseMs = 250;
    server.answer(path, answer);
    const HttpResponse response = patient.download(server.url(path), filePath, large);
    EXPECT_EQ(response.error, QString());
    EXPECT_EQ(fileBytes(), answer.body);
}

TEST_F(QtHttpsTransportTest, aFetchThatDripsEndsAtItsLimit) {
    QtHttpsTransport::Settings settings = trusting(authority);
    settings.fetchLimit = 1s;
    QtHttpsTransport impatient(settings);
    Answer answer = withBody(QByteArray(1000, 'x'));
    answer.pieces = 1000;
    answer.pauseMs = 100;
    server.answer(path, answer);
    EXPECT_EQ(impatient.fetch(server.url(path), large).error, QStringLiteral("The request timed out."));
}

struct BadServer {
    const char* name;
    test::ServerIdentity identity;
    const char* complaint;
};

TEST_F(QtHttpsTransportTest, certificatesThatProveNothingAreRefused) {
    using Validity = CertificateAuthority::Validity;
    const CertificateAuthority stranger;
    const std::vector<BadServer> servers{
        {"another authority", stranger.issue({localhost}), "issuer certificate"},
        {"another name", authority.issue({QStringLiteral("updates.example")}), "host name"},
        {"a name below", authority.issue({QStringLiteral("a.localhost")}), "host name"},
        {"expired", authority.issue({localhost}, Validity::past), "expired"},
        {"not valid yet", authority.issue({localhost}, Validity::future), "not yet valid"},
    };
    for (const BadServer& bad : servers) {
        SCOPED_TRACE(bad.name);
        HttpsServer impostor(bad.identity);
        impostor.answer(path, withBody("{}"));
        HttpResponse response = transport.fetch(impostor.url(path), large);
        EXPECT_THAT(response.error.toStdString(), HasSubstr(bad.complaint));
        EXPECT_EQ(response.body, QByteArray());
        response = transport.download(impostor.url(path), filePath, large);
        EXPECT_NE(response.error, QString());
        EXPECT_EQ(fileBytes(), QByteArray());
        QFile::remove(filePath);
        EXPECT_EQ(impostor.requests().size(), 0) << "nothing was asked of it";
    }
}

TEST_F(QtHttpsTransportTest, anImpostorBehindARedirectionIsAnErrorOfTheNetwork) {
    HttpsServer impostor(CertificateAuthority().issue({localhost}));
    const HttpResponse response = fetch(Answer::redirection(impostor.url(path).toString()));
    EXPECT_THAT(response.error.toStdString(), HasSubstr("issuer certificate"));
}

TEST_F(QtHttpsTransportTest, onlyTheSystemsAuthoritiesCountByDefault) {
    server.answer(path, withBody("{}"));
    QtHttpsTransport ordinary;
    EXPECT_NE(ordinary.fetch(server.url(path), large).error, QString());
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(QtHttpsTransportTest, theEnvironmentAddsNoAuthority) {
    QFile file(QString::fromStdString((folder / "authority.pem").string()));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(authority.certificate().toPem());
    file.close();
    EnvironmentGuard environment;
    environment.set("SSL_CERT_FILE", file.fileName().toUtf8());
    environment.set("SSL_CERT_DIR", QByteArray::fromStdString(folder.path().string()));
    server.answer(path, withBody("{}"));
    QtHttpsTransport ordinary;
    EXPECT_NE(ordinary.fetch(server.url(path), large).error, QString());
    EXPECT_EQ(server.requests().size(), 0);
}

TEST_F(QtHttpsTransportTest, aServerThatIsNotThereIsAnError) {
    QUrl url;
    {
        const HttpsServer gone(authority.issue({localhost}));
        url = gone.url(path);
    }
    EXPECT_NE(transport.fetch(url, large).error, QString());
    EXPECT_NE(transport.fetch(QUrl(QStringLiteral("https://updates.example.invalid/x")), large).error,
              QString());
}

TEST_F(QtHttpsTransportTest, aFileThatCannotBeMadeIsAnErrorBeforeAnythingIsAsked) {
    QFile taken(filePath);
    ASSERT_TRUE(taken.open(QIODevice::WriteOnly));
    EXPECT_NE(download(withBody("x")).error, QString()) << "it never writes into a file that is there";
    const QString nowhere = filePath + QStringLiteral("/none/file");
    EXPECT_NE(transport.download(server.url(path), nowhere, large).error, QString());
    EXPECT_EQ(server.requests().size(), 0);
}

// Files of this process may not become longer while it exists.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before_{};
};

TEST_F(QtHttpsTransportTest, aFileThatCannotGrowIsAnError) {
    const FileSizeLimit limit(50'000);
    EXPECT_NE(download(endless(), 100 * large).error, QString());
}

TEST_F(QtHttpsTransportTest, cancellingEndsWhatRunsAndWhatWouldBegin) {
    server.answer(path, standingStill("some"));
    std::thread canceller([&] {
        while (server.requests().isEmpty())
            std::this_thread::sleep_for(1ms);
        transport.cancel();
    });
    const HttpResponse response = transport.download(server.url(path), filePath, large);
    canceller.join();
    EXPECT_NE(response.error, QString());
    EXPECT_NE(fetch(withBody("{}")).error, QString());
}

#if defined(__linux__)
class SilentNameServer {
  public:
    SilentNameServer() { set(true); }
    ~SilentNameServer() { set(false); }
    SilentNameServer(const SilentNameServer&) = delete;
    SilentNameServer& operator=(const SilentNameServer&) = delete;

  private:
    static void set(bool isHeld) {
        const std::lock_guard lock(lookupMutex);
        isLookupHeld = isHeld;
        lookupGoesOn.notify_all();
    }
};

TEST_F(QtHttpsTransportTest, aNameServerThatKeepsSilentIsWaitedForWithinTheLimit) {
    QtHttpsTransport::Settings settings = trusting(authority);
    settings.fetchLimit = 100ms;
    settings.standstillLimit = 100ms;
    QtHttpsTransport impatient(settings);
    server.answer(path, withBody("{}"));
    const SilentNameServer silence;
    EXPECT_EQ(impatient.fetch(server.url(path), large).error, QStringLiteral("The request timed out."));
    EXPECT_EQ(impatient.download(server.url(path), filePath, large).error,
              QStringLiteral("The request timed out."));
    EXPECT_EQ(server.requests().size(), 0) << "the library, which could not be stopped, was not asked";
}

TEST_F(QtHttpsTransportTest, cancellingDoesNotWaitForANameServer) {
    const SilentNameServer silence;
    const int before = lookupsHeld;
    std::thread canceller([&] {
        while (lookupsHeld == before)
            std::this_thread::sleep_for(1ms);
        transport.cancel();
    });
    EXPECT_EQ(fetch(withBody("{}")).error, QStringLiteral("The program is about to end."));
    canceller.join();
    EXPECT_EQ(fetch(withBody("{}")).error, QStringLiteral("The program is about to end."));
}
#endif

TEST_F(QtHttpsTransportTest, severalTransfersRunAtATime) {
    server.answer(path, withBody("{}"));
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { good += transport.fetch(server.url(path), large).body == "{}" ? 1 : 0; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, 4);
}

}  // namespace
}  // namespace orlix
