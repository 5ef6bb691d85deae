// The pasteboard through QClipboard. Main thread only.
#pragma once

#include "platform/pasteboard.h"

namespace orlix {

class QtPasteboard : public Pasteboard {
  public:
    void setText(const QString& text) override;
};

}  // namespace orlix
