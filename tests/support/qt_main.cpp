// The main function of every test program that needs Qt: one QApplication for all cases.
#include <gmock/gmock.h>

#include <QApplication>

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    // Also when the cases are only listed, and when a person starts the program: a test needs no display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
