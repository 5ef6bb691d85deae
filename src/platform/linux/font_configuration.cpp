#include "platform/linux/font_configuration.h"

#include <fontconfig/fontconfig.h>

#include <clocale>

namespace orlix {

std::future<void> startReadingFontConfiguration() {
    // Numbers are read by the locale's rules: it must not change meanwhile.
    std::setlocale(LC_ALL, "");
    return std::async(std::launch::async, [] { FcInit(); });
}

}  // namespace orlix
