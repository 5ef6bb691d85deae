// The text of one key in the interface's current language, redrawn when the language changes.
#pragma once

#include "ui/controls/text_label.h"

namespace orlix {

class LocalizationManager;

class LocalizedText : public TextLabel {
    Q_OBJECT
  public:
    /// `loc` and `theme` outlive the view.
    LocalizedText(const QString& key, TextStyle style, ColorRole role, LocalizationManager& loc, Theme& theme,
                  QWidget* parent = nullptr);

    const QString& key() const { return key_; }

  private:
    void refresh();

    LocalizationManager& loc_;
    QString key_;
};

}  // namespace orlix
