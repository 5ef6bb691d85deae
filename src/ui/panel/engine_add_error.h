// What is said when an engine could not be added. Any thread.
#pragma once

#include <QString>
#include <optional>

namespace orlix {

/// `error` itself, or the fixed sentence where there is none; the same in every language.
inline QString engineAddErrorText(const std::optional<QString>& error) {
    const bool hasText = error && !error->trimmed().isEmpty();
    return hasText ? *error : QStringLiteral("Unknown error adding engine.");
}

}  // namespace orlix
