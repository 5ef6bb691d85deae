#include "update/file_digest.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include <QCryptographicHash>
#include <string>

#include "platform/posix/unique_fd.h"
#include "platform/sha256.h"
#include "support/update_world.h"

namespace orlix {
namespace {

using test::complaintOf;
using test::text;

QString reference(const std::string& bytes) {
    return QString::fromLatin1(
        QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256).toHex());
}

TEST(FileDigest, isTheWholeFilesDigestInLowerCase) {
    const test::TemporaryFolder folder;
    const auto path = folder / "file";
    // Around the size of one chunk too.
    for (const std::size_t size : {0U, 1U, 55U, 56U, 64U, 1048575U, 1048576U, 1048577U, 3000000U}) {
        SCOPED_TRACE(size);
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 253);
        test::writeFile(path, bytes);
        EXPECT_EQ(sha256(text(path)), reference(bytes));
    }
    test::writeFile(path, "abc");
    EXPECT_EQ(sha256(text(path)),
              QStringLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
}

TEST(FileDigest, ofADescriptorIsWhatItHasLeft) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "file", "xabc");
    const UniqueFd file(open((folder / "file").c_str(), O_RDONLY));
    ASSERT_EQ(lseek(file.get(), 1, SEEK_SET), 1);
    EXPECT_EQ(sha256OfDescriptor(file.get()), reference("abc"));
    EXPECT_NE(fcntl(file.get(), F_GETFD), -1) << "it stays open";
}

TEST(FileDigest, aFileThatCannotBeReadIsTheSystemsError) {
    const test::TemporaryFolder folder;
    EXPECT_EQ(complaintOf([&] { sha256(text(folder / "none")); }),
              QStringLiteral("No such file or directory"));
    EXPECT_EQ(complaintOf([&] { sha256(text(folder.path())); }), QStringLiteral("Is a directory"));
}

TEST(FileDigest, canBeBrokenOff) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "file", "abc");
    std::atomic<bool> isCancelled = true;
    EXPECT_NE(complaintOf([&] { sha256(text(folder / "file"), &isCancelled); }), QString());
    isCancelled = false;
    EXPECT_EQ(sha256(text(folder / "file"), &isCancelled), reference("abc"));
}

TEST(Sha256, takesPiecesOfAnySize) {
    Sha256 digest;
    digest.add("a", 1);
    digest.add("", 0);
    digest.add("bc", 2);
    EXPECT_EQ(QString::fromStdString(digest.finish()), reference("abc"));
}

}  // namespace
}  // namespace orlix
