// A pasteboard that only its test sees.
#pragma once

#include <QString>
#include <optional>

#include "platform/pasteboard.h"

namespace orlix::test {

class FakePasteboard : public Pasteboard {
  public:
    std::optional<QString> text;  ///< what was put last; nothing before that

    void setText(const QString& newText) override { text = newText; }
};

}  // namespace orlix::test
