#include "platform/linux/canberra_output.h"

#include <canberra.h>

#include <QDir>
#include <QFile>

#include "platform/linux/loaded_library.h"

namespace orlix {
namespace {

/// The functions of the library in use, or none of them.
struct Library {
    decltype(&ca_context_create) create = nullptr;
    decltype(&ca_context_destroy) destroy = nullptr;
    decltype(&ca_context_change_props) changeProperties = nullptr;
    decltype(&ca_context_play) play = nullptr;

    bool isLoaded() const { return create && destroy && changeProperties && play; }
};

const Library& library() {
    // Never unloaded: the sound servers' own client libraries behind it do not survive that.
    static const Library loaded = [] {
        const LoadedLibrary canberra("libcanberra.so.0");
        Library functions;
        canberra.find("ca_context_create", functions.create);
        canberra.find("ca_context_destroy", functions.destroy);
        canberra.find("ca_context_change_props", functions.changeProperties);
        canberra.find("ca_context_play", functions.play);
        return functions;
    }();
    return loaded;
}

/// Asked before every opening, since ALSA complains on standard error when there is nothing to open.
bool isAnyOutputPresent() {
    if (qEnvironmentVariableIsSet("PULSE_SERVER") || qEnvironmentVariableIsSet("CANBERRA_DRIVER"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && (QFile::exists(runtime + QStringLiteral("/pulse/native")) ||
                               QFile::exists(runtime + QStringLiteral("/pipewire-0"))))
        return true;
    const QDir devices(QStringLiteral("/dev/snd"), QStringLiteral("pcm*p"), QDir::NoSort, QDir::System);
    return !devices.isEmpty();
}

}  // namespace

class CanberraOutput::Context {
  public:
    Context() {
        if (!library().isLoaded() || library().create(&context_) != CA_SUCCESS) {
            context_ = nullptr;
            return;
        }
        library().changeProperties(context_, CA_PROP_APPLICATION_NAME, "Velmorandix Orlix",
                                   CA_PROP_APPLICATION_ID, "com.dovu.velmorandix", nullptr);
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context() {
        if (context_ && library().destroy) library().destroy(context_);
    }

    bool play(const std::string& path) {
        if (!context_) return false;
        return library().play(context_, 0, CA_PROP_MEDIA_FILENAME, path.c_str(), CA_PROP_MEDIA_ROLE, "event",
                              nullptr) == CA_SUCCESS;
    }

  private:
    ca_context* context_ = nullptr;
};

CanberraOutput::CanberraOutput() = default;
CanberraOutput::~CanberraOutput() = default;

void CanberraOutput::play(const std::string& path) {
    if (!context_) {
        if (!isAnyOutputPresent()) return;
        context_ = std::make_unique<Context>();
    }
    // A context whose server went away never recovers; the next sound opens another.
    if (!context_->play(path)) context_.reset();
}

}  // namespace orlix
