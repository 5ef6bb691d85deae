#include "platform/linux/font_configuration.h"

#include <fontconfig/fontconfig.h>

#include <clocale>
#include <memory>

namespace orlix {
namespace {

struct PatternDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;

FcChar8 const* asFontText(const char* text) {
    return reinterpret_cast<FcChar8 const*>(text);
}

std::string installedFamily(const char* generic) {
    const Pattern asked(FcPatternCreate());
    FcPatternAddString(asked.get(), FC_FAMILY, asFontText(generic));
    FcConfigSubstitute(nullptr, asked.get(), FcMatchPattern);
    FcDefaultSubstitute(asked.get());
    FcResult result{};
    const Pattern found(FcFontMatch(nullptr, asked.get(), &result));
    FcChar8* family = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FAMILY, 0, &family) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(family);
}

}  // namespace

std::future<GenericFamilies> startReadingFontConfiguration() {
    // Numbers are read by the locale's rules: it must not change meanwhile.
    std::setlocale(LC_ALL, "");
    return std::async(std::launch::async, [] {
        FcInit();
        return GenericFamilies{installedFamily("sans-serif"), installedFamily("monospace")};
    });
}

}  // namespace orlix
