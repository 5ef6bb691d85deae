#include "platform/qt/qt_file_store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#ifdef __linux__
#include <sys/mount.h>
#endif

namespace orlix {
namespace {

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

class QtFileStoreTest : public ::testing::Test {
  protected:
    QTemporaryDir folder;
    QtFileStore store;

    QString pathOf(const QString& name) const { return folder.filePath(name); }
    QStringList filesInFolder() const {
        return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }
};

TEST_F(QtFileStoreTest, newFileGetsExactlyTheBytes) {
    const QByteArray bytes("1. e4 e5\r\n\0Zo\xC3\xAB\n", 16);
    EXPECT_TRUE(store.writeAtomically(pathOf(QStringLiteral("a.pgn")), bytes));
    EXPECT_EQ(contentsOf(pathOf(QStringLiteral("a.pgn"))), bytes);
}

TEST_F(QtFileStoreTest, oldContentsAreReplacedWhole) {
    const QString path = pathOf(QStringLiteral("a.pgn"));
    ASSERT_TRUE(store.writeAtomically(path, QByteArray(10000, 'x')));
    EXPECT_TRUE(store.writeAtomically(path, "short"));
    EXPECT_EQ(contentsOf(path), "short");
    EXPECT_EQ(filesInFolder(), QStringList{QStringLiteral("a.pgn")});
}

TEST_F(QtFileStoreTest, emptyContentsMakeAnEmptyFile) {
    EXPECT_TRUE(store.writeAtomically(pathOf(QStringLiteral("a.fen")), {}));
    EXPECT_EQ(contentsOf(pathOf(QStringLiteral("a.fen"))), QByteArray());
}

TEST_F(QtFileStoreTest, missingFolderFails) {
    EXPECT_FALSE(store.writeAtomically(pathOf(QStringLiteral("nowhere/a.pgn")), "text"));
    EXPECT_TRUE(filesInFolder().isEmpty());
}

TEST_F(QtFileStoreTest, folderInPlaceOfTheFileFails) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("a.pgn")));
    EXPECT_FALSE(store.writeAtomically(pathOf(QStringLiteral("a.pgn")), "text"));
    EXPECT_TRUE(filesInFolder().isEmpty());
}

#ifdef __linux__
/// A file system of 64 KiB, for those who may mount one.
class FullDiskTest : public QtFileStoreTest {
  protected:
    void SetUp() override {
        const QByteArray where = QFile::encodeName(folder.path());
        isMounted_ = mount("tmpfs", where.constData(), "tmpfs", 0, "size=64k") == 0;
        if (!isMounted_) GTEST_SKIP() << "mounting a small file system takes root";
    }
    void TearDown() override {
        if (isMounted_) umount(QFile::encodeName(folder.path()).constData());
    }

  private:
    bool isMounted_ = false;
};

TEST_F(FullDiskTest, oldFileSurvivesAWriteThatDoesNotFit) {
    const QString path = pathOf(QStringLiteral("a.pgn"));
    ASSERT_TRUE(store.writeAtomically(path, "the game so far"));

    EXPECT_FALSE(store.writeAtomically(path, QByteArray(200 * 1024, 'x')));
    EXPECT_EQ(contentsOf(path), "the game so far");
    EXPECT_EQ(filesInFolder(), QStringList{QStringLiteral("a.pgn")});
}

TEST_F(FullDiskTest, shortTextThatStaysInTheBufferFailsToo) {
    const QString path = pathOf(QStringLiteral("a.pgn"));
    ASSERT_TRUE(store.writeAtomically(path, "the game so far"));
    QFile filler(pathOf(QStringLiteral("filler")));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) {
    }
    filler.close();

    EXPECT_FALSE(store.writeAtomically(path, "1. e4"));
    EXPECT_EQ(contentsOf(path), "the game so far");
}
#endif

}  // namespace
}  // namespace orlix
