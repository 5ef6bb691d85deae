// The system's save and open panels. Main thread only; every panel is modal to the window and asynchronous.
#pragma once

#include <QString>
#include <functional>
#include <optional>

namespace orlix {

class FileDialogs {
  public:
    struct SaveRequest {
        QString title;
        QString fileName;       ///< preset in the name field
        QString fileExtension;  ///< without a dot; the panel offers files of this kind
    };
    struct OpenRequest {
        QString title;
        QString prompt;  ///< text of the confirming button
    };
    /// The chosen path, or nothing when the user cancelled.
    using Completion = std::function<void(std::optional<QString> path)>;

    virtual ~FileDialogs() = default;

    virtual void save(const SaveRequest& request, Completion completion) = 0;
    /// One existing file of any kind, no directory.
    virtual void open(const OpenRequest& request, Completion completion) = 0;
};

}  // namespace orlix
