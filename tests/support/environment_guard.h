// Sets environment variables for one test and puts back what was there.
#pragma once

#include <QByteArray>
#include <map>
#include <optional>

namespace orlix {

class EnvironmentGuard {
  public:
    EnvironmentGuard() = default;
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;
    ~EnvironmentGuard() {
        for (const auto& [name, value] : before_) {
            if (value)
                qputenv(name.constData(), *value);
            else
                qunsetenv(name.constData());
        }
    }

    void set(const char* name, const QByteArray& value) {
        remember(name);
        qputenv(name, value);
    }
    void unset(const char* name) {
        remember(name);
        qunsetenv(name);
    }

  private:
    void remember(const char* name) {
        before_.try_emplace(name,
                            qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
    }

    std::map<QByteArray, std::optional<QByteArray>> before_;
};

}  // namespace orlix
