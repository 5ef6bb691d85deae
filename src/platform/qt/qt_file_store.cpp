#include "platform/qt/qt_file_store.h"

#include <QSaveFile>

namespace orlix {

bool QtFileStore::writeAtomically(const QString& path, const QByteArray& contents) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    // commit() alone is not to be trusted: with a full disk it was seen to answer true after the buffered
    // rest could not be written, and the old file was gone. So everything is on the disk before it is called.
    const bool complete =
        file.write(contents) == contents.size() && file.flush() && file.error() == QFileDevice::NoError;
    if (!complete) file.cancelWriting();
    return file.commit() && complete;
}

}  // namespace orlix
