// The main function of every test program.

#ifdef PANELKIT_TEST_GUI
#include <QApplication>
#else
#include <QCoreApplication>
#endif

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleMock(&argc, argv);
#ifdef PANELKIT_TEST_GUI
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("FONTCONFIG_FILE"))
        qputenv("FONTCONFIG_FILE", PANELKIT_TEST_FONTS);
    QApplication application(argc, argv);
#else
    QCoreApplication application(argc, argv);
#endif
    return RUN_ALL_TESTS();
}
