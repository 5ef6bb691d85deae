// The service over the real transport and a real server: what a user is told of everything that a network can
// do.
#include <gmock/gmock.h>

#include "platform/qt/qt_https_transport.h"
#include "support/https_server.h"
#include "support/update_world.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
using test::Answer;
using test::CertificateAuthority;
using test::complaintOf;
using test::HttpsServer;
using test::UpdateWorld;
using ::testing::HasSubstr;

const QString feedPath = QStringLiteral("/updates/Velmorandix/appcast.json");
const QString imagePath = QStringLiteral("/files/orlix.dmg");
const QString localhost = QStringLiteral("localhost");
const QString otherHost = QStringLiteral("127.0.0.1");
const QString unexpected = QStringLiteral("The update server returned an unexpected response.");

Answer withBody(const QByteArray& body) {
    Answer answer;
    answer.body = body;
    return answer;
}

Answer loginPage(int status = 200) {
    Answer answer = withBody("<!DOCTYPE html><html><body>Please log in to use this network.</body></html>");
    answer.headers = {{"Content-Type", "text/html"}};
    answer.status = status;
    return answer;
}

class UpdateOverHttps : public ::testing::Test {
  protected:
    UpdateOverHttps() {
        world.info.downloadURL = server.url(imagePath);
        server.answer(imagePath, withBody(world.transport.fileContents));
    }
    static QtHttpsTransport::Settings settings(const CertificateAuthority& authority) {
        QtHttpsTransport::Settings result;
        result.authorities = {authority.certificate()};
        result.fetchLimit = 1s;
        result.standstillLimit = 1s;
        return result;
    }
    UpdateService service(const HttpsServer& feed) {
        return UpdateService({transport,
                              world.tools,
                              world.diskImageTool,
                              world.signatures,
                              world.starter,
                              world.files,
                              world.defaults,
                              world.running,
                              {test::text(world.caches), test::text(world.support)},
                              feed.url(feedPath).toString()});
    }
    CheckResult check() { return service(server).check(); }
    QString checkFailure(const Answer& answer) {
        server.answer(feedPath, answer);
        const CheckResult result = check();
        const auto* failed = std::get_if<CheckFailed>(&result);
        return failed != nullptr ? failed->message : QString();
    }
    QString complaint(const Answer& image) {
        server.answer(imagePath, image);
        return complaint();
    }
    QString complaint() {
        UpdateService updates = service(server);
        const QString result = complaintOf([&] { updates.prepareForInstallation(world.info); });
        EXPECT_EQ(std::filesystem::exists(world.imagePath()), result.isEmpty());
        EXPECT_FALSE(std::filesystem::exists(world.imagePath().string() + ".part"));
        return result;
    }
    QString wrongSize(qint64 received) const {
        return QStringLiteral("The update has the wrong size (expected %1, received %2 bytes).")
            .arg(*world.info.size)
            .arg(received);
    }

    UpdateWorld world;
    CertificateAuthority authority;
    HttpsServer server{authority.issue({localhost, otherHost})};
    QtHttpsTransport transport{settings(authority)};
};

TEST_F(UpdateOverHttps, findsAndPreparesARelease) {
    server.answer(feedPath, withBody(world.info.toJson()));
    EXPECT_EQ(check(), CheckResult(UpdateAvailable{world.info}));
    EXPECT_EQ(complaint(), QString());
}

TEST_F(UpdateOverHttps, thePageOfACaptivePortalIsNoFeed) {
    EXPECT_EQ(checkFailure(loginPage()), QStringLiteral("The update feed is not valid JSON: illegal value."));
    EXPECT_EQ(checkFailure(loginPage(511)),
              QStringLiteral("The update feed did not return a successful response."));
    server.answer(QStringLiteral("/login"), loginPage());
    EXPECT_EQ(checkFailure(Answer::redirection(server.url(QStringLiteral("/login"), otherHost).toString())),
              QStringLiteral("The update feed is not valid JSON: illegal value."));
    EXPECT_EQ(checkFailure(Answer::redirection(QStringLiteral("http://login.example/"))),
              QStringLiteral("The update feed did not return a successful response."))
        << "nobody goes to a plain address";
}

TEST_F(UpdateOverHttps, thePageOfACaptivePortalIsNoImage) {
    EXPECT_EQ(complaint(loginPage()), wrongSize(loginPage().body.size()));
    EXPECT_EQ(complaint(loginPage(511)), unexpected);
    server.answer(QStringLiteral("/login"), loginPage());
    EXPECT_EQ(complaint(Answer::redirection(server.url(QStringLiteral("/login"), otherHost).toString())),
              unexpected);
    EXPECT_EQ(complaint(Answer::redirection(QStringLiteral("http://login.example/"))), unexpected);
}

TEST_F(UpdateOverHttps, aChainOfRedirectionsIsJudgedByItsEnd) {
    const auto at = [this](const char* path, const QString& host) {
        return server.url(QString::fromLatin1(path), host).toString();
    };
    const Answer good = withBody(world.transport.fileContents);
    server.answer(QStringLiteral("/here"), good);
    server.answer(QStringLiteral("/by-another"), Answer::redirection(at("/here", localhost), 307));
    server.answer(QStringLiteral("/to-another"), Answer::redirection(at("/there", otherHost), 308));
    server.answer(QStringLiteral("/there"), good);
    EXPECT_EQ(complaint(Answer::redirection(QStringLiteral("/here"), 301)), QString());
    EXPECT_EQ(complaint(Answer::redirection(at("/by-another", otherHost))), QString())
        << "what lies between does not count";
    std::filesystem::remove(world.imagePath());
    EXPECT_EQ(complaint(Answer::redirection(at("/there", otherHost))), unexpected);
    EXPECT_EQ(complaint(Answer::redirection(QStringLiteral("/to-another"), 303)), unexpected);
    EXPECT_EQ(complaint(Answer::redirection(server.url(imagePath).toString())), unexpected) << "a circle";
    EXPECT_EQ(complaint(Answer::redirection(QStringLiteral("file:///etc/hostname"))).isEmpty(), false);
    EXPECT_EQ(complaint(Answer::redirection(QString())).isEmpty(), false);
}

TEST_F(UpdateOverHttps, aServerThatProvesNothingIsAskedNothing) {
    const CertificateAuthority stranger;
    using Validity = CertificateAuthority::Validity;
    for (const auto& [identity, words] : std::vector<std::pair<test::ServerIdentity, const char*>>{
             {stranger.issue({localhost}), "issuer certificate"},
             {authority.issue({QStringLiteral("updates.example")}), "host name"},
             {authority.issue({localhost}, Validity::past), "expired"},
             {authority.issue({localhost}, Validity::future), "not yet valid"},
         }) {
        SCOPED_TRACE(words);
        HttpsServer impostor(identity);
        impostor.answer(feedPath, withBody(world.info.toJson()));
        impostor.answer(imagePath, withBody(world.transport.fileContents));
        UpdateService updates = service(impostor);
        const CheckResult result = updates.check();
        ASSERT_TRUE(std::holds_alternative<CheckFailed>(result));
        EXPECT_THAT(std::get<CheckFailed>(result).message.toStdString(), HasSubstr(words));
        world.info.downloadURL = impostor.url(imagePath);
        EXPECT_THAT(complaintOf([&] { updates.prepareForInstallation(world.info); }).toStdString(),
                    HasSubstr(words));
        EXPECT_FALSE(std::filesystem::exists(world.imagePath()));
        EXPECT_EQ(impostor.requests().size(), 0);
    }
}

TEST_F(UpdateOverHttps, aBodyThatIsNotTheFeedIsTold) {
    Answer half = withBody("{\"version\":\"2\"");
    half.claimedLength = 1000;
    EXPECT_NE(checkFailure(half), QString());
    half.ending = Answer::Ending::reset;
    EXPECT_NE(checkFailure(half), QString());
    half.ending = Answer::Ending::standStill;
    EXPECT_EQ(checkFailure(half), QStringLiteral("The request timed out."));
    Answer endless = withBody(QByteArray(100'000, ' '));
    endless.claimedLength = 0;
    endless.ending = Answer::Ending::repeat;
    EXPECT_EQ(checkFailure(endless), QStringLiteral("The update feed is too long."));
    Answer packed = withBody(QByteArray::fromHex("1f8b0800000000000003cb48cdc9c9070086a6103605000000"));
    packed.headers = {{"Content-Encoding", "gzip"}};
    EXPECT_EQ(checkFailure(packed), QStringLiteral("The update feed is not valid JSON: illegal value."));
    EXPECT_EQ(checkFailure(withBody({})).left(31), QStringLiteral("The update feed is not valid JS"));
}

TEST_F(UpdateOverHttps, aBodyThatIsNotTheImageIsTold) {
    const QByteArray image = world.transport.fileContents;
    EXPECT_EQ(complaint(withBody(image.chopped(1))), wrongSize(image.size() - 1));
    EXPECT_EQ(complaint(withBody(image + 'x')), wrongSize(image.size() + 1));
    QByteArray other = image;
    other[10] = other[10] == 'x' ? 'y' : 'x';
    EXPECT_EQ(complaint(withBody(other)),
              QStringLiteral("The downloaded update failed SHA-256 verification."));
    Answer broken = withBody(image.left(100));
    broken.claimedLength = image.size();
    for (const Answer::Ending ending :
         {Answer::Ending::close, Answer::Ending::reset, Answer::Ending::standStill}) {
        broken.ending = ending;
        EXPECT_NE(complaint(broken), QString());
    }
    Answer endless = withBody(QByteArray(100'000, 'x'));
    endless.claimedLength = 0;
    endless.ending = Answer::Ending::repeat;
    EXPECT_TRUE(complaint(endless).startsWith(QStringLiteral("The update has the wrong size (expected ")));
    Answer packed = withBody(QByteArray::fromHex("1f8b0800000000000003cb48cdc9c9070086a6103605000000"));
    packed.headers = {{"Content-Encoding", "gzip"}};
    EXPECT_EQ(complaint(packed), wrongSize(packed.body.size())) << "its bytes count as they came";
    EXPECT_EQ(complaint(withBody({})), wrongSize(0));
    Answer slow = withBody(image);
    slow.pieces = 10;
    slow.pauseMs = 150;
    EXPECT_EQ(complaint(slow), QString()) << "slow is no fault";
}

}  // namespace
}  // namespace orlix
