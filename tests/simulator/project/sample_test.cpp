#include "simulator/sample/sample.h"

#include "simulator/drivers/modbusblocks.h"
#include "simulator/project/projectlinks.h"
#include "simulator/project/valuetypes.h"
#include "tests/simulator/project/validproject.h"

#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <gmock/gmock.h>

using namespace panelkit::simulator;

namespace {

class Sample : public ::testing::Test
{
protected:
    Sample()
    {
        ProjectError error;
        const std::optional<Project> read = readProject(sampleProject(), error);
        EXPECT_TRUE(read) << error.text().toStdString();
        project = read.value_or(Project());
    }

    const LinkDefinition *link(const QString &name) const
    {
        for (const LinkDefinition &candidate : project.links)
            if (candidate.name == name)
                return &candidate;
        return nullptr;
    }

    // Whether an item shows a block of a PLC (of one or of many stations) in the simulator's reach.
    bool isPolled(const ItemDefinition &item, bool manyStations) const
    {
        const LinkDefinition *owner = link(item.address.link);
        return owner != nullptr && owner->isEthernet() && owner->manyStations == manyStations;
    }

    Project project;
};

// The registers that the page on the bottling line lists: "unit block index" to the type.
QMap<QString, QString> registerMap()
{
    const QString page =
        QString::fromUtf8(panelkit::testing::contents(QStringLiteral(PANELKIT_FORMATS "/bottling-line.md")));
    const QRegularExpression row(QStringLiteral("^\\| ([0134]x) (\\d+)[^|]* \\| (\\d+) \\| (\\w+) \\|"));
    QMap<QString, QString> types;
    int unit = 0;
    for (const QString &line : page.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("## Unit ")))
            unit = line.mid(8, 1).toInt();
        const QRegularExpressionMatch match = row.match(line);
        if (!match.hasMatch())
            continue;
        EXPECT_EQ(match.captured(2).toInt(), match.captured(3).toInt() + 1) << line.toStdString();
        types.insert(QStringLiteral("%1 %2 %3").arg(unit).arg(match.captured(1), match.captured(3)),
                     match.captured(4));
    }
    return types;
}

// The key of an address in that map; a bit of a word register gives the register.
QString registerKey(const AddressDefinition &address)
{
    const ModbusBlock *block = findModbusBlock(address.block);
    EXPECT_NE(block, nullptr) << address.block.toStdString();
    const int index = block != nullptr && block->isInWord ? address.index / 16 : address.index;
    return QStringLiteral("%1 %2 %3").arg(address.station).arg(address.block.left(2)).arg(index);
}

} // namespace

TEST_F(Sample, HasEveryDataTypeAndView)
{
    QSet<int> types;
    QSet<int> views;
    for (const ItemDefinition &item : project.items) {
        types.insert(item.type);
        views.insert(item.view);
    }
    EXPECT_EQ(types, (QSet<int>{-1, 0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(views, (QSet<int>{0, 1, 2, 3}));
}

TEST_F(Sample, ShowsInternalAndPlcBlocksOfOneAndOfManyStations)
{
    QSet<QString> internalBlocks;
    QSet<QString> plcBlocks;
    QSet<int> stations;
    for (const ItemDefinition &item : project.items) {
        if (item.address.link == QLatin1String(internalStorageName))
            internalBlocks.insert(item.address.block);
        if (isPolled(item, false))
            plcBlocks.insert(item.address.block);
        if (isPolled(item, true))
            stations.insert(item.address.station);
    }
    EXPECT_EQ(internalBlocks,
              (QSet<QString>{QStringLiteral("LB"), QStringLiteral("LW"), QStringLiteral("RWI")}));
    QSet<QString> everyBlock;
    for (const ModbusBlock &block : modbusBlocks)
        everyBlock.insert(QLatin1String(block.name));
    EXPECT_EQ(plcBlocks, everyBlock);
    EXPECT_EQ(stations, (QSet<int>{2, 3}));
}

TEST_F(Sample, HasALinkThatIsOnlyChecked)
{
    const LinkDefinition *serial = link(QStringLiteral("Steam PLC"));
    ASSERT_NE(serial, nullptr);
    EXPECT_FALSE(serial->isEthernet());
    EXPECT_EQ(serial->driverBaseName(), QStringLiteral("ByteAddressed"));
}

TEST_F(Sample, NamesTheBlocksOfTheModbusDriver)
{
    QStringList blocks;
    for (const ModbusBlock &block : modbusBlocks)
        blocks << QLatin1String(block.name);
    for (const LinkDefinition &candidate : project.links) {
        if (candidate.driverBaseName() == QLatin1String("Modbus")) {
            EXPECT_EQ(candidate.blocks, blocks) << candidate.name.toStdString();
        }
    }
}

TEST_F(Sample, UsesOnlyBlocksThatALinkHas)
{
    const QStringList internalBlocks = {QStringLiteral("LB"), QStringLiteral("LW"), QStringLiteral("RWI")};
    for (const ItemDefinition &item : project.items) {
        const LinkDefinition *owner = link(item.address.link);
        const QStringList &blocks = owner == nullptr ? internalBlocks : owner->blocks;
        EXPECT_TRUE(blocks.contains(item.address.block)) << item.name.toStdString();
    }
}

TEST_F(Sample, NumbersAndIndexesAgree)
{
    for (const ItemDefinition &item : project.items) {
        SCOPED_TRACE(item.name.toStdString());
        const LinkDefinition *owner = link(item.address.link);
        if (owner == nullptr) {
            EXPECT_EQ(item.number, QString::number(item.address.index));
        } else if (const ModbusBlock *block = findModbusBlock(item.address.block)) {
            const QStringList parts = item.number.split(QLatin1Char('.'));
            ASSERT_EQ(parts.size(), block->isInWord ? 2 : 1);
            const int word = parts[0].toInt() - 1;
            EXPECT_EQ(item.address.index, block->isInWord ? word * 16 + parts[1].toInt() : word);
        }
    }
}

TEST_F(Sample, AgreesWithTheRegisterMap)
{
    const QMap<QString, QString> types = registerMap();
    ASSERT_GT(types.size(), 30);
    int count = 0;
    for (const ItemDefinition &item : project.items) {
        if (!isPolled(item, false) && !isPolled(item, true))
            continue;
        SCOPED_TRACE(item.name.toStdString());
        const bool isBitOfWord = item.address.block.endsWith(QLatin1String("_bit"));
        EXPECT_EQ(types.value(registerKey(item.address)),
                  isBitOfWord ? QLatin1String("uint16") : typeName(item.type));
        ++count;
    }
    for (const VariableDefinition &variable : project.variables) {
        if (variable.address.link == QLatin1String(internalStorageName))
            continue;
        SCOPED_TRACE(variable.name.toStdString());
        const QString type = types.value(registerKey(variable.address));
        const auto expected =
            std::find_if(valueTypes.begin(), valueTypes.end(),
                         [&](const ValueType &candidate) { return candidate.variable == variable.dataType; });
        EXPECT_EQ(type, QLatin1String(expected->name));
        ++count;
    }
    EXPECT_GT(count, 30);
}

TEST_F(Sample, HasMacrosThatReadAndWriteDeclaredVariables)
{
    QSet<QString> declared;
    for (const VariableDefinition &variable : project.variables)
        declared.insert(variable.name);

    QSet<int> modes;
    QSet<QString> used;
    int textVariables = 0;
    for (const ItemDefinition &item : project.items) {
        SCOPED_TRACE(item.name.toStdString());
        modes.insert(item.macro.mode);
        textVariables += static_cast<int>(item.macro.textVariables.size());
        EXPECT_EQ(item.macro.press.isEmpty(), item.macro.mode != 1 && item.macro.mode != 3);
        EXPECT_EQ(item.macro.release.isEmpty(), item.macro.mode != 2 && item.macro.mode != 3);
        for (const QString &line : (item.macro.press + QLatin1Char('\n') + item.macro.release).split('\n')) {
            const QStringList sides = line.split(QLatin1Char('='));
            if (sides.size() != 2)
                continue;
            const QString left = sides[0].trimmed();
            const QString right = sides[1].trimmed();
            EXPECT_TRUE(declared.contains(left) || declared.contains(right)) << line.toStdString();
            used += declared & QSet<QString>{left, right};
        }
    }
    EXPECT_EQ(modes, (QSet<int>{0, 1, 2, 3}));
    EXPECT_EQ(used, declared) << "every variable is read or written by a macro";
    EXPECT_EQ(textVariables, 3);
}
