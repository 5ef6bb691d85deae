// The line of the update sheet that says what is going on or what came of it. A value; any thread.
#pragma once

#include <QString>

namespace orlix {

struct UpdateMessage {
    enum class Kind {
        asItStands,  ///< `detail` is the whole text: an error's own, or that of the installing program
        checking,
        upToDate,     ///< `detail` is the running version
        checkFailed,  ///< `detail` is the reason
        verifying,    ///< `detail` is the version that is being downloaded and verified
        verified,
        updaterNotStarted,  ///< `detail` is the reason
    };

    Kind kind = Kind::asItStands;
    QString detail = {};

    /// In English. Reasons come in the words of whatever failed.
    QString text() const;

    bool operator==(const UpdateMessage&) const = default;
};

}  // namespace orlix
