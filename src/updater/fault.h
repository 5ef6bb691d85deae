// Why something was not done.
#pragma once

#include <optional>
#include <string>

namespace orlix {

/// A reason for the user to read, as the part of a sentence after a colon, without a full stop; none when all
/// is well.
using Fault = std::optional<std::string>;

/// `what` with the system's text for `error`, a value of errno; none for 0.
Fault faultOf(const std::string& what, int error);

/// The system's text for a value of errno.
std::string errorText(int error);

}  // namespace orlix
