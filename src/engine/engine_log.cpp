#include "engine/engine_log.h"

#include <utility>

namespace orlix {

void EngineLog::append(QString entry) {
    makeRoom();
    entries_.push_back({std::move(entry), {}});
}

void EngineLog::appendReceived(std::string line) {
    makeRoom();
    entries_.push_back({{}, std::move(line)});
}

const QStringList& EngineLog::lines() const {
    if (isCurrent_) return lines_;
    lines_.clear();
    lines_.reserve(static_cast<qsizetype>(entries_.size()));
    for (Entry& entry : entries_) {
        if (!entry.received.empty()) {
            entry.text =
                QStringLiteral("< ") +
                QString::fromUtf8(entry.received.data(), static_cast<qsizetype>(entry.received.size()));
            entry.received = std::string();
        }
        lines_.append(entry.text);
    }
    isCurrent_ = true;
    return lines_;
}

void EngineLog::makeRoom() {
    isCurrent_ = false;
    if (entries_.size() >= fullSize) entries_.erase(entries_.begin(), entries_.begin() + droppedAtOnce);
}

}  // namespace orlix
