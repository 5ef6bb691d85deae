#include "ui/localized_text.h"

#include <gtest/gtest.h>

#include "l10n/localization_manager.h"
#include "support/fake_defaults_store.h"
#include "support/fake_system_settings.h"
#include "ui/theme.h"

namespace orlix {
namespace {

class LocalizedTextTest : public ::testing::Test {
  protected:
    FakeDefaultsStore defaults_;
    FakeSystemSettings system_;
    LocalizationManager loc_{defaults_, system_};
    Theme theme_;
};

TEST_F(LocalizedTextTest, showsItsKeysTextInTheCurrentLanguage) {
    const LocalizedText view(QStringLiteral("btn_pause"), TextStyle::body, ColorRole::text, loc_, theme_);
    EXPECT_EQ(view.key(), QStringLiteral("btn_pause"));
    EXPECT_EQ(view.text(), QStringLiteral("Pause"));
    loc_.setCurrentLanguage(Language::dutch);
    EXPECT_EQ(view.text(), QStringLiteral("Pauze"));
    EXPECT_EQ(view.accessibleName(), QStringLiteral("Pauze"));
}

TEST_F(LocalizedTextTest, isDrawnAnewWhenTheLanguageChanges) {
    LocalizedText view(QStringLiteral("color_white"), TextStyle::body, ColorRole::text, loc_, theme_);
    view.resize(120, 20);
    const QImage before = view.grab().toImage();
    loc_.setCurrentLanguage(Language::french);
    EXPECT_NE(view.grab().toImage(), before);
    loc_.setCurrentLanguage(Language::english);
    EXPECT_EQ(view.grab().toImage(), before);
}

TEST_F(LocalizedTextTest, showsAKeyThatHasNoTextAsItself) {
    const LocalizedText view(QStringLiteral("no_such_key"), TextStyle::body, ColorRole::text, loc_, theme_);
    EXPECT_EQ(view.text(), QStringLiteral("no_such_key"));
}

}  // namespace
}  // namespace orlix
