// Who signed this very program.
#pragma once

#include <string>

#include "platform/code_signature.h"
#include "platform/process_watcher.h"

namespace orlix {

/// The team in this program's own signature, which Apple has to vouch for. Empty when the signature is not
/// valid or names no team: an empty team is nobody's.
std::string ownTeam(ProcessWatcher& processes, CodeSignatureReader& signatures);

}  // namespace orlix
