#include "update/update_controller.h"

#include <cassert>
#include <utility>

#include "platform/post.h"
#include "update/update_error.h"
#include "update/update_service.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;
using Kind = UpdateMessage::Kind;

constexpr auto launchCheckDelay = 4s;
constexpr int threadCount = 2;  // a check beside an installation

UpdateController* registered = nullptr;

}  // namespace

UpdateController& UpdateController::shared() {
    assert(registered != nullptr);
    return *registered;
}

void UpdateController::registerShared(UpdateController* instance) {
    registered = instance;
}

UpdateController::UpdateController(UpdateService& service, TimeSource& time,
                                   std::function<void()> requestTermination, QObject* parent)
    : QObject(parent), service_(service), time_(time), requestTermination_(std::move(requestTermination)) {
    threads_.setMaxThreadCount(threadCount);
}

UpdateController::~UpdateController() {
    service_.cancel();
    threads_.waitForDone();
}

std::optional<QString> UpdateController::message() const {
    return state_.message ? std::optional(state_.message->text()) : std::nullopt;
}

void UpdateController::assign(const State& state) {
    if (state == state_) return;
    state_ = state;
    Q_EMIT changed();
}

void UpdateController::setPresented(bool isPresented) {
    State state = state_;
    state.isPresented = isPresented;
    assign(state);
}

// Results come back as events to this object: should it be gone, so are they; and it waits for the work
// before it goes.
template <class Work, class Done>
void UpdateController::inBackground(Work work, Done done) {
    threads_.start(HandedOver([this, work = std::move(work), done = std::move(done)] {
        auto result = work();
        post(this, [done, result = std::move(result)] { done(result); });
    }));
}

void UpdateController::handleLaunch() {
    if (const auto result = service_.consumeInstallStatus()) {
        State state = state_;
        state.message = UpdateMessage{Kind::asItStands, result->message};
        state.failed = !result->succeeded;
        state.isPresented = true;
        assign(state);
    }
    if (service_.checksAtLaunch())
        launchTimer_ = time_.after(launchCheckDelay, [this] { checkForUpdates(true); });
}

void UpdateController::checkForUpdates(bool silent) {
    if (state_.isChecking) return;
    State state = state_;
    state.isChecking = true;
    state.failed = false;
    state.message = UpdateMessage{Kind::checking};
    if (!silent) state.isPresented = true;
    assign(state);
    inBackground([this] { return service_.check(); },
                 [this](const CheckResult& result) { applyCheck(result); });
}

void UpdateController::applyCheck(const CheckResult& result) {
    State state = state_;
    state.isChecking = false;
    state.availableUpdate.reset();
    if (const auto* upToDate = std::get_if<UpToDate>(&result)) {
        state.message = UpdateMessage{Kind::upToDate, upToDate->version};
    } else if (const auto* available = std::get_if<UpdateAvailable>(&result)) {
        state.availableUpdate = available->info;
        state.message.reset();
        state.isPresented = true;
    } else if (const auto* failure = std::get_if<CheckFailed>(&result)) {
        state.message = UpdateMessage{Kind::checkFailed, failure->message};
        state.failed = true;
    }
    assign(state);
}

void UpdateController::install() {
    if (!state_.availableUpdate || state_.isInstalling) return;
    State state = state_;
    state.isInstalling = true;
    state.failed = false;
    state.message = UpdateMessage{Kind::verifying, state.availableUpdate->version};
    assign(state);
    inBackground(
        [this, info = *state.availableUpdate] {
            try {
                service_.scheduleInstallation(service_.prepareForInstallation(info));
            } catch (const UpdateError& error) {
                return std::optional(error.errorDescription());
            } catch (const std::exception& error) {  // such as a lack of memory
                return std::optional(QString::fromLocal8Bit(error.what()));
            }
            return std::optional<QString>();
        },
        [this](const std::optional<QString>& error) { finishInstallation(error); });
}

void UpdateController::finishInstallation(const std::optional<QString>& error) {
    State state = state_;
    state.isInstalling = false;
    if (error) {
        state.message = UpdateMessage{Kind::asItStands, *error};
        state.failed = true;
        assign(state);
        return;
    }
    state.message = UpdateMessage{Kind::verified};
    state.isPresented = false;
    assign(state);
    requestTermination_();
}

TerminationReply UpdateController::launchScheduledInstallerIfNeeded() {
    try {
        service_.launchScheduledInstaller();
    } catch (const UpdateError& error) {
        service_.forgetScheduledInstaller();
        State state = state_;
        state.message = UpdateMessage{Kind::updaterNotStarted, error.errorDescription()};
        state.failed = true;
        state.isPresented = true;
        assign(state);
        return TerminationReply::terminateCancel;
    }
    return TerminationReply::terminateNow;
}

}  // namespace orlix
