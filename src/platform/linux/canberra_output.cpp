#include "platform/linux/canberra_output.h"

#include <canberra.h>
#include <dlfcn.h>

#include <QDir>
#include <QFile>

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

template <typename Function>
void resolve(void* handle, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(handle, name));
}

const Library& library() {
    // Never unloaded: the sound servers' own client libraries behind it do not survive that.
    static const Library loaded = [] {
        Library functions;
        if (void* handle = dlopen("libcanberra.so.0", RTLD_NOW | RTLD_LOCAL)) {
            resolve(handle, "ca_context_create", functions.create);
            resolve(handle, "ca_context_destroy", functions.destroy);
            resolve(handle, "ca_context_change_props", functions.changeProperties);
            resolve(handle, "ca_context_play", functions.play);
        }
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
