// File panels that a test answers by hand.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "platform/file_dialogs.h"

namespace orlix::test {

class FakeFileDialogs : public FileDialogs {
  public:
    std::vector<SaveRequest> saveRequests;
    std::vector<OpenRequest> openRequests;

    void save(const SaveRequest& request, Completion completion) override {
        saveRequests.push_back(request);
        completion_ = std::move(completion);
    }
    void open(const OpenRequest& request, Completion completion) override {
        openRequests.push_back(request);
        completion_ = std::move(completion);
    }

    bool isOpen() const { return completion_ != nullptr; }
    /// The user confirms `path` in the panel opened last, or cancels it with nothing.
    void answer(const std::optional<QString>& path) { std::exchange(completion_, nullptr)(path); }

  private:
    Completion completion_;
};

}  // namespace orlix::test
