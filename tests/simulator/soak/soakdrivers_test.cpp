#include "simulator/soak/soakdrivers.h"

#include "link/driverfile.h"

#include <QLibrary>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

class SoakDriverFiles : public ::testing::Test
{
protected:
    SoakDriverFiles()
    {
        QString error;
        EXPECT_TRUE(drivers.load(error)) << error.toStdString();
    }

    DriverFileState place(SoakDriver driver)
    {
        EXPECT_TRUE(drivers.place(root.path(), 7, driver));
        EXPECT_EQ(drivers.driverOf(7), driver);
        return tools_driverFileState(path());
    }

    QString path() const
    {
        return root.path() + QLatin1String("/usr/tesk42/project/driver/libSoakDriver_7.so");
    }

    bool hasCheck() const
    {
        QLibrary library(path());
        const bool isLoaded = library.load();
        const bool has = library.resolve("intf_checkAddr") != nullptr;
        library.unload();
        return isLoaded && has;
    }

    QTemporaryDir root;
    SoakDrivers drivers{{7}};
};

} // namespace

TEST_F(SoakDriverFiles, AreWholeOrAnsweringCodes)
{
    EXPECT_EQ(place(SoakDriver::Whole), DriverFileState::Complete);
    EXPECT_TRUE(hasCheck());
    EXPECT_EQ(place(SoakDriver::Coded), DriverFileState::Complete);
    EXPECT_TRUE(hasCheck());
}

TEST_F(SoakDriverFiles, LoadWithoutAnyFunction)
{
    EXPECT_EQ(place(SoakDriver::WithoutFunctions), DriverFileState::Complete);
    QLibrary library(path());
    EXPECT_TRUE(library.load()) << library.errorString().toStdString();
    EXPECT_EQ(library.resolve("intf_checkAddr"), nullptr);
    EXPECT_EQ(library.resolve("intf_checkAddrValidity"), nullptr);
    EXPECT_EQ(library.resolve("intf_getRegDiscription"), nullptr);
    library.unload();
}

TEST_F(SoakDriverFiles, AreWrongInEveryOtherWay)
{
    EXPECT_EQ(place(SoakDriver::OtherProcessor), DriverFileState::ForeignProcessor);
    EXPECT_EQ(place(SoakDriver::Truncated), DriverFileState::Truncated);
    EXPECT_EQ(place(SoakDriver::NoLibrary), DriverFileState::NotALibrary);
    EXPECT_EQ(place(SoakDriver::Missing), DriverFileState::Missing);
    EXPECT_EQ(place(SoakDriver::Missing), DriverFileState::Missing);
}
