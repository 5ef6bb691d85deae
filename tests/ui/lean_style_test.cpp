#include "ui/lean_style.h"

#include <gtest/gtest.h>

namespace orlix {
namespace {

TEST(LeanStyle, loadsNoPictureForTheMenuBar) {
    EXPECT_TRUE(
        LeanStyle().standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, nullptr, nullptr).isNull());
}

TEST(LeanStyle, keepsThePicturesThatDialogsShow) {
    EXPECT_FALSE(LeanStyle().standardIcon(QStyle::SP_MessageBoxWarning, nullptr, nullptr).isNull());
}

TEST(LeanStyle, looksLikeFusion) {
    EXPECT_EQ(LeanStyle().baseStyle()->name(), QStringLiteral("fusion"));
}

}  // namespace
}  // namespace orlix
