// The main function of every test program.

#ifdef PANELKIT_TEST_GUI
#include <QApplication>
#else
#include <QCoreApplication>
#endif

#include <gmock/gmock.h>

#if defined(PANELKIT_TEST_GUI) && defined(__SANITIZE_ADDRESS__)
// Libraries below the toolkit that keep what they once allocated.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions();
const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig.so\nleak:libdbus-1.so\nleak:libqoffscreen.so\n";
}
#endif

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
