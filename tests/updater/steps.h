// Every call of a seam is a step with a number. A test looks on, lets one of them fail, or ends the process.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orlix::test {

class Steps {
  public:
    /// Called before a step with its number, counted from 0; another value than 0 is the error it fails with.
    std::function<int(int number)> before;
    /// Called after a step that was not made to fail.
    std::function<void(int number)> after;

    template <typename Action>
    int run(const char* name, Action action) {
        const int number = static_cast<int>(names_.size());
        names_.emplace_back(name);
        if (const int error = before ? before(number) : 0) return error;
        const int result = action();
        if (after) after(number);
        return result;
    }

    /// The names of the steps so far.
    const std::vector<std::string>& names() const { return names_; }
    int count() const { return static_cast<int>(names_.size()); }

  private:
    std::vector<std::string> names_;
};

}  // namespace orlix::test
