// Everything about updates that the user can see, and the operations behind the controls of the update sheet.
// Owned by the composition root; main thread only. The work itself runs on threads of its own.
#pragma once

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <optional>

#include "platform/time_source.h"
#include "update/check_result.h"
#include "update/update_message.h"

namespace orlix {

class UpdateService;

enum class TerminationReply { terminateNow, terminateCancel };

class UpdateController : public QObject {
    Q_OBJECT
  public:
    /// The registered instance; asserts that there is one.
    static UpdateController& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(UpdateController* instance);

    /// `requestTermination` asks the application to quit; it may refuse.
    UpdateController(UpdateService& service, TimeSource& time, std::function<void()> requestTermination,
                     QObject* parent = nullptr);
    /// Breaks off what runs and waits for it.
    ~UpdateController() override;

    /// The update sheet is shown.
    bool isPresented() const { return state_.isPresented; }
    void setPresented(bool isPresented);
    /// The release last found to be newer than the running application.
    const std::optional<UpdateInfo>& availableUpdate() const { return state_.availableUpdate; }
    /// Status or error, for the sheet, in English.
    std::optional<QString> message() const;
    /// The same for whoever puts it into another language.
    const std::optional<UpdateMessage>& messageParts() const { return state_.message; }
    bool isChecking() const { return state_.isChecking; }
    /// A release is being downloaded, verified or staged.
    bool isInstalling() const { return state_.isInstalling; }
    /// `message` reports a failure.
    bool failed() const { return state_.failed; }

    /// To be called once when the application has started: shows what came of the last installation, and
    /// looks for updates four seconds later unless the user turned that off.
    void handleLaunch();
    /// A silent check shows nothing until it has found an update. Does nothing while a check runs.
    void checkForUpdates(bool silent);
    /// Downloads, verifies and stages the available update, then asks the application to quit. Does nothing
    /// without one, or while another installation runs.
    void install();
    /// For the application's should-terminate hook: starts the installing program when one is scheduled.
    /// Cancels the quit, and says why, when it cannot be started.
    TerminationReply launchScheduledInstallerIfNeeded();

  Q_SIGNALS:
    void changed();

  private:
    struct State {
        bool isPresented = false;
        std::optional<UpdateInfo> availableUpdate;
        std::optional<UpdateMessage> message;
        bool isChecking = false;
        bool isInstalling = false;
        bool failed = false;
        bool operator==(const State&) const = default;
    };

    /// Assigns all of it, then announces once.
    void assign(const State& state);
    void applyCheck(const CheckResult& result);
    void finishInstallation(const std::optional<QString>& error);
    /// Runs `work` on a thread of its own, then `done` with its result on the main thread.
    template <class Work, class Done>
    void inBackground(Work work, Done done);

    UpdateService& service_;
    TimeSource& time_;
    std::function<void()> requestTermination_;
    State state_;
    std::unique_ptr<Timer> launchTimer_;
    QThreadPool threads_;
};

}  // namespace orlix
