#include "platform/qt/qt_file_tests.h"

#include <QDir>
#include <QFileInfo>

namespace orlix {

bool QtFileTests::exists(const QString& path) const {
    return QFileInfo::exists(path);
}

bool QtFileTests::isExecutableFile(const QString& path) const {
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

QString QtFileTests::homeDirectory() const {
    const QString home = QDir::homePath();
    return home.endsWith(u'/') ? home.chopped(1) : home;
}

}  // namespace orlix
