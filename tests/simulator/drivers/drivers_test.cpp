// The sample drivers, as the libraries that they are.

#include "link/driverfile.h"
#include "link/driverinterface.h"
#include "link/linkinfo.h"
#include "simulator/drivers/modbusblocks.h"

#include <QFile>
#include <QLibrary>

#include <gtest/gtest.h>

#include <limits>
#include <random>

using panelkit::simulator::modbusBlocks;

namespace {

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

class Driver
{
public:
    explicit Driver(const char *name) : m_library(text(PANELKIT_DRIVERS "/lib") + text(name) + text(".so"))
    {
        EXPECT_EQ(tools_driverFileState(m_library.fileName()), DriverFileState::Complete);
        EXPECT_TRUE(m_library.load()) << qPrintable(m_library.errorString());
        checkAddr = reinterpret_cast<CheckAddrFunction>(m_library.resolve("intf_checkAddr"));
        checkValidity =
            reinterpret_cast<CheckAddrValidityFunction>(m_library.resolve("intf_checkAddrValidity"));
        describe = reinterpret_cast<GetRegDiscriptionFunction>(m_library.resolve("intf_getRegDiscription"));
    }
    ~Driver() { m_library.unload(); }

    QStringList description(const char *block) const
    {
        QString name = text(block);
        QStringList entries;
        describe(name, entries);
        return entries;
    }

    // As the lookup of an index asks: the width that the description gives, and -1 to begin with.
    int indexOf(const QString &block, const QString &number) const
    {
        QString name = block;
        QStringList entries;
        describe(name, entries);
        const int width = entries.size() == 5 ? entries.at(3).toInt() : 1;
        QString address = number;
        int index = -1;
        name = block;
        checkValidity(name, address, index, width > 1 ? 2 : 1, width);
        return index;
    }

    CheckAddrFunction checkAddr = nullptr;
    CheckAddrValidityFunction checkValidity = nullptr;
    GetRegDiscriptionFunction describe = nullptr;

private:
    QLibrary m_library;
};

// Rows of name, block, number, access, length, code, index ("-" where it must stay as it is), number
// afterwards.
void checkRows(const Driver &driver, const char *fileName)
{
    QFile file(text(PANELKIT_TEST_DATA "/") + text(fileName));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int rows = 0;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        const QStringList row = line.split(QLatin1Char('\t'));
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        SCOPED_TRACE(row.at(0).toStdString());
        ASSERT_EQ(row.size(), 8);
        QString block = row.at(1);
        QString number = row.at(2);
        int index = -99;
        EXPECT_EQ(
            driver.checkAddr(block, number, index, row.at(3) == text("bit") ? -1 : 0, row.at(4).toInt(), 0),
            row.at(5).toInt());
        EXPECT_EQ(index, row.at(6) == text("-") ? -99 : row.at(6).toInt());
        EXPECT_EQ(number, row.at(7));
        if (row.at(6) != text("-")) {
            EXPECT_EQ(driver.indexOf(row.at(1), row.at(2)), index) << "both entry points count alike";
        }
        ++rows;
    }
    EXPECT_GT(rows, 30);
}

// Whatever the texts are, a driver answers with one of its codes and an index within the largest block.
void checkRubbish(const Driver &driver, const QStringList &blocks)
{
    std::mt19937 random(20240229);
    const auto below = [&](qsizetype end) {
        return static_cast<int>(random() % static_cast<unsigned long>(end));
    };
    const QString alphabet =
        QString::fromUtf8("0123456789.0123456789..-+ \t\nax#/é٣８") + QChar(0) + QChar(0xD800);
    const int lengths[] = {std::numeric_limits<int>::min(), -1, 0, 1, 100, std::numeric_limits<int>::max()};
    for (int round = 0; round < 20000; ++round) {
        QString block = blocks.at(below(blocks.size()));
        QString number;
        for (int left = below(14); left > 0; --left)
            number += alphabet.at(below(alphabet.size()));
        int index = -99;
        const int code = driver.checkAddr(block, number, index, -below(2), lengths[below(6)], 0);
        ASSERT_TRUE(code >= 0 && code <= 16) << code;
        ASSERT_TRUE(code == 0 ? index >= 0 && index < 65536 * 16 : index == -99) << index;
        ASSERT_GE(driver.indexOf(block, number), -1);
    }
}

} // namespace

TEST(ModbusDriver, ChecksAddressesByItsNotation)
{
    checkRows(Driver("Modbus"), "modbus.tsv");
}

TEST(ModbusDriver, KnowsTheBlocksThatTheCommunicationKnows)
{
    const Driver driver("Modbus");
    for (const auto &known : modbusBlocks) {
        SCOPED_TRACE(known.name);
        QString block = text(known.name);
        QString number = known.isInWord ? text("1.0") : text("1");
        int index = -99;
        EXPECT_EQ(driver.checkAddr(block, number, index, known.isBit ? -1 : 0, known.indexCount, 0), 0);
        EXPECT_EQ(index, 0);
        EXPECT_EQ(driver.checkAddr(block, number, index, known.isBit ? -1 : 0, known.indexCount + 1, 0), 16);
    }
}

TEST(ModbusDriver, DescribesItsBlocks)
{
    const Driver driver("Modbus");
    EXPECT_EQ(driver.description("4x").join(text("|")), text("4x|1|65536|1|word"));
    EXPECT_EQ(driver.description("0x").join(text("|")), text("0x|1|65536|1|bit"));
    EXPECT_EQ(driver.description("4x_bit").join(text("|")), text("4x_bit|1.0|65536.15|16|bit"));
    EXPECT_EQ(driver.description("5x"), QStringList());
}

TEST(ModbusDriver, FindsIndexesByTheDescribedWidthOnly)
{
    const Driver driver("Modbus");
    EXPECT_EQ(driver.indexOf(text("4x"), text("40")), 39);
    EXPECT_EQ(driver.indexOf(text("4x_bit"), text("1.3")), 3);
    EXPECT_EQ(driver.indexOf(text("4x_bit"), text("1")), -1);
    EXPECT_EQ(driver.indexOf(text("5x"), text("1")), -1);
    QString block = text("4x_bit");
    QString number = text("1.3");
    int index = -1;
    driver.checkValidity(block, number, index, 1, 1);
    EXPECT_EQ(index, -1);
}

TEST(ModbusDriver, SurvivesAnyTexts)
{
    checkRubbish(Driver("Modbus"), {text("4x"), text("4x_bit"), text("0x"), text("x"), QString()});
}

TEST(ByteAddressedDriver, ChecksAddressesByItsNotation)
{
    checkRows(Driver("ByteAddressed"), "byteaddressed.tsv");
}

TEST(ByteAddressedDriver, DescribesItsBlocks)
{
    const Driver driver("ByteAddressed");
    EXPECT_EQ(driver.description("IX").join(text("|")), text("IX|0|1777|1|bit"));
    EXPECT_EQ(driver.description("QB").join(text("|")), text("QB|0|177|1|word"));
    EXPECT_EQ(driver.description("MX").join(text("|")), text("MX|0.0|4095.7|8|bit"));
    EXPECT_EQ(driver.description("MW").join(text("|")), text("MW|0|4094|1|word"));
    EXPECT_EQ(driver.description("MD").join(text("|")), text("MD|0|4092|1|word"));
    EXPECT_EQ(driver.description("DX").join(text("|")), text("DX|0.0|8191.15|16|bit"));
    EXPECT_EQ(driver.description("DD").join(text("|")), text("DD|0|8190|1|word"));
}

TEST(ByteAddressedDriver, FindsIndexes)
{
    const Driver driver("ByteAddressed");
    EXPECT_EQ(driver.indexOf(text("IX"), text("17")), 15);
    EXPECT_EQ(driver.indexOf(text("MX"), text("3.1")), 25);
    EXPECT_EQ(driver.indexOf(text("DX"), text("2.15")), 47);
    EXPECT_EQ(driver.indexOf(text("MW"), text("11")), -1);
}

TEST(ByteAddressedDriver, SurvivesAnyTexts)
{
    checkRubbish(Driver("ByteAddressed"),
                 {text("IX"), text("MX"), text("MW"), text("DX"), text("DD"), QString()});
}

TEST(SampleDrivers, LeaveTheProcessWhenTheyAreUnloaded)
{
    const auto isMapped = [] {
        QFile maps(text("/proc/self/maps"));
        maps.open(QIODevice::ReadOnly);
        return maps.readAll().contains(PANELKIT_DRIVERS "/lib");
    };
    {
        const Driver modbus("Modbus");
        const Driver byteAddressed("ByteAddressed");
        EXPECT_TRUE(isMapped());
    }
    EXPECT_FALSE(isMapped());
}
