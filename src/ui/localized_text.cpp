#include "ui/localized_text.h"

#include "l10n/localization_manager.h"

namespace orlix {

LocalizedText::LocalizedText(const QString& key, TextStyle style, ColorRole role, LocalizationManager& loc,
                             Theme& theme, QWidget* parent)
    : TextLabel(style, role, theme, parent), loc_(loc), key_(key) {
    refresh();
    connect(&loc_, &LocalizationManager::changed, this, &LocalizedText::refresh);
}

void LocalizedText::refresh() {
    setText(loc_.text(key_));
}

}  // namespace orlix
