#include "updater/own_team.h"

#include <unistd.h>

namespace orlix {

std::string ownTeam(ProcessWatcher& processes, CodeSignatureReader& signatures) {
    std::unique_ptr<WatchedProcess> self;
    if (processes.watch(getpid(), self) != 0) return {};
    SignatureInfo info;
    if (signatures.read(self->program(), "anchor apple generic", info) != SignatureFault::none) return {};
    return info.teamIdentifier.value_or(std::string());
}

}  // namespace orlix
