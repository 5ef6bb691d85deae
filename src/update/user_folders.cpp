#include "update/user_folders.h"

#include <QStandardPaths>

namespace orlix {

UserFolders userFolders() {
    return {QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation),
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)};
}

}  // namespace orlix
