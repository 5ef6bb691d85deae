#include "platform/linux/font_configuration.h"

#include <gtest/gtest.h>

#include <QFont>
#include <QFontInfo>

namespace orlix {
namespace {

QString installed(const char* generic) {
    return QFontInfo(QFont(QLatin1String(generic))).family();
}

TEST(FontConfiguration, namesTheFamiliesThatQtTakesForTheGenericNames) {
    const GenericFamilies families = startReadingFontConfiguration().get();
    EXPECT_FALSE(families.sansSerif.empty());
    EXPECT_EQ(QString::fromStdString(families.sansSerif), installed("Sans Serif"));
    EXPECT_EQ(QString::fromStdString(families.monospace), installed("monospace"));
}

}  // namespace
}  // namespace orlix
