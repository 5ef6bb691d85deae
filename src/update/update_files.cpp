#include "update/update_files.h"

#include <QFile>
#include <QSaveFile>
#include <filesystem>
#include <system_error>

#include "update/update_error.h"

namespace orlix::files {
namespace {

namespace fs = std::filesystem;

fs::path native(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

void check(const std::error_code& error) {
    if (error) throw SystemError(QString::fromStdString(error.message()));
}

}  // namespace

void makeFolder(const QString& path) {
    std::error_code error;
    fs::create_directories(native(path), error);
    check(error);
}

void move(const QString& from, const QString& to) {
    std::error_code error;
    fs::rename(native(from), native(to), error);
    check(error);
}

void copy(const QString& from, const QString& to) {
    std::error_code error;
    fs::copy_file(native(from), native(to), error);
    check(error);
}

void makeProgram(const QString& path) {
    using fs::perms;
    constexpr perms everybody = perms::owner_read | perms::owner_exec | perms::group_read |
                                perms::group_exec | perms::others_read | perms::others_exec;
    std::error_code error;
    fs::permissions(native(path), everybody | perms::owner_write, error);
    check(error);
}

void writeForUser(const QString& path, const QByteArray& contents) {
    QSaveFile file(path);
    const bool isComplete = file.open(QIODevice::WriteOnly) &&
                            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                            file.write(contents) == contents.size() && file.flush() &&
                            file.error() == QFileDevice::NoError && file.commit();
    if (!isComplete) throw SystemError(file.errorString());
}

void remove(const QString& path) noexcept {
    std::error_code ignored;
    fs::remove(native(path), ignored);
}

qint64 sizeOf(const QString& path) noexcept {
    std::error_code error;
    const auto size = fs::file_size(native(path), error);
    return error ? 0 : static_cast<qint64>(size);
}

QString resolved(const QString& path) {
    std::error_code error;
    const fs::path result = fs::weakly_canonical(native(path), error);
    return error ? path : QFile::decodeName(QByteArray::fromStdString(result.string()));
}

}  // namespace orlix::files
