#include "simulator/host/devicefigures.h"

#include "runtime/systemroot.h"
#include "simulator/host/panelfiles.h"

#include <gtest/gtest.h>

using namespace panelkit::simulator;

namespace {

class DeviceFiguresTest : public ::testing::Test
{
protected:
    DeviceFiguresTest()
    {
        processor.firstCall = 1;
        beginWithNewFiles();
    }
    ~DeviceFiguresTest() override { tools_setSystemRoot(QString()); }

    void beginWithNewFiles()
    {
        QString error;
        files = PanelFiles::create(QString(), error);
        ASSERT_TRUE(files) << error.toStdString();
        tools_setSystemRoot(files->root());
    }

    // Settings are read anew when a file's size or its time differs, and a tick of that clock is milliseconds
    // long: each model gets a file of its own.
    DeviceFigures figuresOf(const QByteArray &model)
    {
        beginWithNewFiles();
        QString error;
        EXPECT_TRUE(files->write(QStringLiteral("/usr/tesk42/config.ini"), "MODEL=" + model + '\n', error));
        return takeDeviceFigures(processor, files->root());
    }

    cpu_info processor = {};
    std::unique_ptr<PanelFiles> files;
};

} // namespace

TEST_F(DeviceFiguresTest, AreOfThePanelBelowTheSystemRoot)
{
    const DeviceFigures figures = takeDeviceFigures(processor, files->root());
    EXPECT_EQ(processor.firstCall, 0) << "the load is counted from here on";
    EXPECT_EQ(figures.load, 0);
    EXPECT_GT(figures.freeMemoryOfMachine, 0U);
    EXPECT_EQ(figures.diskPath, files->root());
    EXPECT_GT(figures.disk.totalMB, 0);
    EXPECT_TRUE(figures.model.isEmpty());
    EXPECT_EQ(figures.iotVersion, 1);
}

TEST_F(DeviceFiguresTest, NameTheKindOfDeviceByItsModel)
{
    EXPECT_EQ(deviceKind(figuresOf("T10")), QStringLiteral("panel"));
    EXPECT_EQ(deviceKind(figuresOf("W10")), QStringLiteral("panel with the IoT runtime"));
    const DeviceFigures box = figuresOf("Keld 2");
    EXPECT_EQ(deviceKind(box), QStringLiteral("gateway box with the IoT runtime"));
    EXPECT_EQ(box.model, QStringLiteral("Keld 2"));
}

TEST_F(DeviceFiguresTest, SayWhenThePanelsCountOfMemoryBeganAgain)
{
    DeviceFigures figures;
    figures.freeMemoryOfMachine = 4194303;
    EXPECT_FALSE(figures.isMemoryWrapped());
    figures.freeMemoryOfMachine = 4194304;
    EXPECT_TRUE(figures.isMemoryWrapped());
}
