// What the update code throws: its own refusals and the system's errors, each with the text that the user
// sees. Values; any thread.
#pragma once

#include <QString>
#include <exception>

namespace orlix {

/// Base of everything that the update code throws.
class UpdateError : public std::exception {
  public:
    /// The sentence for the user, shown as it stands.
    virtual QString errorDescription() const = 0;
    const char* what() const noexcept override { return "the update failed"; }
};

/// A failure that is not ours: of the network, of the file system, of starting a program.
class SystemError : public UpdateError {
  public:
    explicit SystemError(QString description) : description_(std::move(description)) {}
    /// With the system's text for `error`, a value of errno.
    static SystemError fromErrno(int error);

    QString errorDescription() const override { return description_; }

  private:
    QString description_;
};

/// A refusal by this program. The cases stand in the order in which they were declared first; every one has
/// its text in `errorDescription`.
class NativeUpdateError : public UpdateError {
  public:
    enum class Case {
        incompatibleSystem,
        sizeMismatch,
        invalidDiskImage,
        invalidApplication,
        installerPreparationFailed,
        invalidDownloadURL,
        missingVerificationMetadata,
        unexpectedResponse,
        checksumMismatch,
        appRunningFromDiskImage,
        missingDeveloperSignature,
        missingInstallerHelper,
    };

    /// For the cases without a payload.
    explicit NativeUpdateError(Case kind) : kind_(kind) {}
    static NativeUpdateError incompatibleSystem(const QString& requiredVersion);
    /// Both in bytes.
    static NativeUpdateError sizeMismatch(qint64 expected, qint64 actual);
    static NativeUpdateError invalidDiskImage(const QString& reason);
    static NativeUpdateError invalidApplication(const QString& reason);
    static NativeUpdateError installerPreparationFailed(const QString& reason);

    Case kind() const { return kind_; }
    QString errorDescription() const override;

    friend bool operator==(const NativeUpdateError& left, const NativeUpdateError& right) {
        return left.kind_ == right.kind_ && left.text_ == right.text_ && left.expected_ == right.expected_ &&
               left.actual_ == right.actual_;
    }

  private:
    NativeUpdateError(Case kind, QString text) : kind_(kind), text_(std::move(text)) {}

    Case kind_;
    QString text_;
    qint64 expected_ = 0;
    qint64 actual_ = 0;
};

}  // namespace orlix
