// Puts one folder in another's place, in one step where the volume can do that, and back.
#pragma once

#include <string>

#include "platform/file_operations.h"

namespace orlix {

class NameExchange {
  public:
    /// `name` in `folder` is the place; `inner` is a folder on the same volume whose `name` is to get there.
    /// Both descriptors stay open as long as this object.
    NameExchange(FileOperations& files, int folder, int inner, std::string name)
        : files_(files), folder_(folder), inner_(inner), name_(std::move(name)), outgoing_(name_) {}

    /// Afterwards the new folder is in place and the old one in `inner`, called `outgoing`; or, with an error
    /// number, nothing has changed. Where the volume cannot exchange names the old one is moved aside first;
    /// if this process dies just then, a second one moves it back.
    int exchange();
    /// The other way: what was in place before `exchange` is there again, or an error number.
    int exchangeBack();

    const std::string& outgoing() const { return outgoing_; }

  private:
    int moveBoth(const std::string& incoming, const std::string& outgoing, const std::string& old);

    FileOperations& files_;
    const int folder_;
    const int inner_;
    const std::string name_;
    std::string outgoing_;
};

}  // namespace orlix
