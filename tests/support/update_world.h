// A whole small world for the update service: a fake network, signatures and starter, a stand-in for the
// disk-image tool, and real files in a folder of the test's own.
#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QList>
#include <QString>
#include <QUrl>
#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/code_signature.h"
#include "platform/detached_starter.h"
#include "platform/https_transport.h"
#include "platform/posix/posix_tool_runner.h"
#include "platform/qt/qt_file_tests.h"
#include "support/disk_image_tool.h"
#include "support/fake_defaults_store.h"
#include "support/temporary_folder.h"
#include "update/update_error.h"
#include "update/update_service.h"

namespace orlix::test {

/// Lets threads through, or holds them until it is opened.
class Gate {
  public:
    void close() { set(false); }
    void open() { set(true); }
    void pass() {
        std::unique_lock lock(mutex_);
        opened_.wait(lock, [this] { return isOpen_; });
    }

  private:
    void set(bool isOpen) {
        const std::lock_guard lock(mutex_);
        isOpen_ = isOpen;
        opened_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = true;
};

/// Answers every transfer with the same response, as soon as its gate is open.
class FakeTransport : public HttpsTransport {
  public:
    HttpResponse response;    ///< of a fetch with its body, of a download without it
    QByteArray fileContents;  ///< what a download writes
    /// Where both come from; the address that was asked for when empty.
    QUrl finalUrl;
    Gate gate;

    HttpResponse fetch(const QUrl& url, qint64 limit) override {
        ++begun;
        gate.pass();
        fetched.append(url);
        fetchLimit = limit;
        return answer(url);
    }
    HttpResponse download(const QUrl& url, const QString& path, qint64 limit) override {
        ++begun;
        gate.pass();
        downloaded.append(url);
        downloadLimit = limit;
        QFile file(path);
        if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) file.write(fileContents);
        HttpResponse result = answer(url);
        result.body.clear();
        return result;
    }
    void cancel() override {
        isCancelled = true;
        gate.open();
    }

    std::atomic<int> begun = 0;
    QList<QUrl> fetched;
    QList<QUrl> downloaded;
    qint64 fetchLimit = 0;
    qint64 downloadLimit = 0;
    std::atomic<bool> isCancelled = false;

  private:
    HttpResponse answer(const QUrl& url) const {
        HttpResponse result = response;
        result.finalUrl = finalUrl.isEmpty() ? url : finalUrl;
        return result;
    }
};

/// Signatures by the bundle's file name; whatever is not named is unreadable.
class FakeSignatures : public CodeSignatureReader {
  public:
    struct Signature {
        SignatureFault fault = SignatureFault::none;
        SignatureInfo info;
    };
    std::map<std::string, Signature> byName;
    std::vector<std::string> asked;  ///< paths

    SignatureFault read(const std::string& path, const std::string& requirement,
                        SignatureInfo& result) override {
        asked.push_back(path);
        const auto found = byName.find(std::filesystem::path(path).filename().string());
        if (found == byName.end() || !requirement.empty()) return SignatureFault::unreadable;
        result = found->second.info;
        return found->second.fault;
    }
};

class FakeStarter : public DetachedStarter {
  public:
    int error = 0;
    std::vector<std::vector<std::string>> started;

    int start(const std::string& path, const std::vector<std::string>& arguments) override {
        started.push_back({path});
        started.back().insert(started.back().end(), arguments.begin(), arguments.end());
        return error;
    }
};

/// Writes an application bundle; a property that is null is left out.
inline void writeBundle(const std::filesystem::path& path, const char* identifier, const char* version,
                        const char* build) {
    std::string list = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>";
    const auto add = [&](const char* key, const char* value) {
        if (value != nullptr) list += std::string("<key>") + key + "</key><string>" + value + "</string>";
    };
    add("CFBundleIdentifier", identifier);
    add("CFBundleShortVersionString", version);
    add("CFBundleVersion", build);
    writeFile(path / "Contents/Info.plist", list + "</dict></plist>\n");
}

inline QString text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

/// Everything is well in it: version 1.9 (41) runs, and the feed has 1.10 (42) in an image that is what it
/// says.
class UpdateWorld {
  public:
    UpdateWorld() {
        writeBundle(runningBundle, "com.dovu.velmorandix", "1.9", "41");
        writeFile(runningBundle / "Contents/Helpers/VelmorandixOrlixUpdater", "#!/bin/sh\n");
        std::filesystem::permissions(runningBundle / "Contents/Helpers/VelmorandixOrlixUpdater",
                                     std::filesystem::perms::owner_all);
        writeBundle(newBundle, "com.dovu.velmorandix", "1.10", "42");
        signatures.byName["Running.app"].info = {"com.dovu.velmorandix", "TEAM123456"};
        signatures.byName["New.app"].info = {"com.dovu.velmorandix", "TEAM123456"};
        running.bundlePath = text(runningBundle);
        // One by one: with the thread sanitizer gcc 12 takes the parts of a whole for uninitialised.
        running.info.identifier = QStringLiteral("com.dovu.velmorandix");
        running.info.shortVersion = QStringLiteral("1.9");
        running.info.version = QStringLiteral("41");
        running.systemVersion = QStringLiteral("14.5.0");
        info.version = QStringLiteral("1.10");
        info.build = QStringLiteral("42");
        info.downloadURL = QUrl(QStringLiteral("https://updates.example/files/orlix.dmg"));
        setImage(QByteArray::fromStdString(DiskImageTool::imageOf(volume, std::string(500, 'x'))));
        transport.response.status = 200;
    }

    /// What the server sends, and what the feed says about it.
    void setImage(const QByteArray& bytes) {
        transport.fileContents = bytes;
        info.size = bytes.size();
        info.sha256 =
            QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    }

    UpdateService& service() {
        if (!service_) {
            service_ = std::make_unique<UpdateService>(UpdateService::Platform{transport,
                                                                               tools,
                                                                               diskImageTool,
                                                                               signatures,
                                                                               starter,
                                                                               files,
                                                                               defaults,
                                                                               running,
                                                                               {text(caches), text(support)},
                                                                               feedAddress});
        }
        return *service_;
    }
    PreparedUpdate prepared() { return service().prepareForInstallation(info); }

    std::filesystem::path releaseFolder() const { return caches / "com.dovu.velmorandix/Updates/1.10-42"; }
    std::filesystem::path imagePath() const { return releaseFolder() / "Velmorandix-Orlix-1.10-42.dmg"; }
    std::filesystem::path statusPath() const {
        return support / "com.dovu.velmorandix/Updates/last-install.json";
    }

    TemporaryFolder folder;
    std::filesystem::path caches = folder / "caches";
    std::filesystem::path support = folder / "support";
    std::filesystem::path runningBundle = folder / "Applications/Running.app";
    std::filesystem::path volume = folder / "Orlix 1.10";
    std::filesystem::path newBundle = volume / "New.app";

    FakeTransport transport;
    PosixToolRunner tools;
    DiskImageTool tool{{}, folder.path()};
    std::string diskImageTool = tool.path().string();
    FakeSignatures signatures;
    FakeStarter starter;
    QtFileTests files;
    FakeDefaultsStore defaults;
    RunningApplication running;
    QString feedAddress = QStringLiteral("https://updates.example/updates/Velmorandix/appcast.json");
    UpdateInfo info;

  private:
    std::unique_ptr<UpdateService> service_;
};

/// What an action throws, as the user reads it; empty when it throws nothing.
template <class Action>
QString complaintOf(const Action& action) {
    try {
        action();
    } catch (const UpdateError& error) {
        return error.errorDescription();
    }
    return {};
}

}  // namespace orlix::test
