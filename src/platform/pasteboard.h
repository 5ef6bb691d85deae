// The system's general pasteboard (clipboard).
#pragma once

#include <QString>

namespace orlix {

class Pasteboard {
  public:
    virtual ~Pasteboard() = default;

    /// Clears the pasteboard and puts `text` on it as a plain string.
    virtual void setText(const QString& text) = 0;
};

}  // namespace orlix
