#include "macro/helpmacrolua.h"
#include "macro/interfaceall.h"
#include "simulator/platform/objecttree.h"
#include "tests/macro/freshargument.h"
#include "tests/support/allocationcounter.h"
#include "tests/support/fieldorder.h"

#include <gtest/gtest.h>

#include <memory>

using namespace panelkit::simulator;
using panelkit::testing::followEachOther;

// The table of script variables is the process's own and only ever grows: each test declares names that no
// other does.
namespace {

struct ProjectNode
{
    // Declares the texts as var0, var1 ...
    explicit ProjectNode(const QStringList &declarations)
    {
        object *list = ObjectTree::appendChild(tree.root(), QStringLiteral("macroVarList"));
        ObjectTree::setNumber(list, QStringLiteral("number"), static_cast<int>(declarations.size()));
        for (int i = 0; i < declarations.size(); ++i)
            ObjectTree::setText(list, QStringLiteral("var%1").arg(i), declarations[i]);
    }

    ObjectTree tree;
};

void declare(const QStringList &declarations)
{
    helpMacroLua::initMacroVarTable(ProjectNode(declarations).tree.root());
}

// The entry under that name in the process-wide table, as a macro that reads it gets it.
scriptVarTable entryOf(const QString &name)
{
    QString text = QStringLiteral("x = ") + name;
    QMap<QString, scriptVarTable> read;
    helpMacroLua::dealLuaForVarList(text, read);
    return read.value(name);
}

bool isDeclared(const QString &name)
{
    return entryOf(name).name == name;
}

struct ItemNode
{
    explicit ItemNode(int mode) { ObjectTree::setNumber(root(), QStringLiteral("macroMode"), mode); }

    void setText(const char *name, const QString &text)
    {
        ObjectTree::setText(root(), QLatin1String(name), text);
    }

    void setTextVariables(const QStringList &declarations, int number)
    {
        object *list = ObjectTree::appendChild(root(), QStringLiteral("macroTextVarList"));
        ObjectTree::setNumber(list, QStringLiteral("number"), number);
        for (int i = 0; i < declarations.size(); ++i)
            ObjectTree::setText(list, QStringLiteral("Textvar%1").arg(i), declarations[i]);
    }

    object *root() { return tree.root(); }

    ObjectTree tree;
};

struct LoadedMacro : itemMacro
{
    explicit LoadedMacro(ItemNode &item, int hasMacroBefore = 0)
    {
        hasMacro = hasMacroBefore;
        helpMacroLua::loadItemMacro(item.root(), *this);
    }

    ~LoadedMacro()
    {
        delete pressArg;
        delete releaseArg;
    }

    LoadedMacro(const LoadedMacro &) = delete;
    LoadedMacro &operator=(const LoadedMacro &) = delete;
};

} // namespace

TEST(MacroRecords, StartWithZerosNullsAndEmptyTexts)
{
    const scriptVarTable variable;
    EXPECT_EQ(variable.dataType, 0);
    for (const QString *text : {&variable.name, &variable.linkName, &variable.station, &variable.blockName,
                                &variable.regIndex, &variable.extra, &variable.typeName})
        EXPECT_TRUE(text->isEmpty());

    const itemMacro macro;
    EXPECT_EQ(macro.hasMacro, 0);
    EXPECT_EQ(macro.macroMode, 0);
    EXPECT_TRUE(macro.pressMacro.isEmpty());
    EXPECT_TRUE(macro.releaseMacro.isEmpty());
    EXPECT_TRUE(macro.textVarList.isEmpty());
    EXPECT_TRUE(macro.varMap.isEmpty());
    EXPECT_EQ(macro.pressArg, nullptr);
    EXPECT_EQ(macro.releaseArg, nullptr);

    const KEY_ADDRESS address;
    EXPECT_TRUE(address.linkName.isEmpty());
    EXPECT_EQ(address.reservedA, 0);
    EXPECT_EQ(address.reservedB, 0);
    EXPECT_EQ(address.station, 0);
    EXPECT_TRUE(address.blockName.isEmpty());
    EXPECT_TRUE(address.reservedText.isEmpty());
    EXPECT_EQ(address.addrIndex, 0);
    EXPECT_EQ(address.reservedC, 0);
    EXPECT_EQ(address.extra, 0);
}

TEST(MacroRecords, HaveTheirFieldsInTheOrderThatTheRuntimeKnows)
{
    const scriptVarTable variable;
    EXPECT_EQ(static_cast<const void *>(&variable), &variable.name);
    EXPECT_TRUE(followEachOther({variable.name, variable.linkName, variable.station, variable.blockName,
                                 variable.regIndex, variable.extra, variable.typeName, variable.dataType}));

    const itemMacro macro;
    EXPECT_EQ(static_cast<const void *>(&macro), &macro.hasMacro);
    EXPECT_TRUE(followEachOther({macro.hasMacro, macro.macroMode, macro.pressMacro, macro.releaseMacro,
                                 macro.textVarList, macro.varMap, macro.pressArg, macro.releaseArg}));

    const KEY_ADDRESS address;
    EXPECT_EQ(static_cast<const void *>(&address), &address.linkName);
    EXPECT_TRUE(followEachOther({address.linkName, address.reservedA, address.reservedB, address.station,
                                 address.blockName, address.reservedText, address.addrIndex,
                                 address.reservedC, address.extra}));
}

TEST(MacroDataType, HasANameForEachNumberFrom0To7)
{
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(0), QStringLiteral("DATA_TYPE_BIT"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(1), QStringLiteral("DATA_TYPE_WUB"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(2), QStringLiteral("DATA_TYPE_WB"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(3), QStringLiteral("DATA_TYPE_WD"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(4), QStringLiteral("DATA_TYPE_DUB"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(5), QStringLiteral("DATA_TYPE_DB"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(6), QStringLiteral("DATA_TYPE_DD"));
    EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(7), QStringLiteral("DATA_TYPE_DF"));
}

TEST(MacroDataType, HasAnEmptyNameForEveryOtherNumber)
{
    for (const int type : {-1, 8, 100, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(helpMacroLua::VarTableDataTypeConverty(type), QString());
}

TEST(VariableDeclarations, GiveEachFieldTrimmedAndTheNameOfTheType)
{
    declare({QStringLiteral(" field a , L 1 , 1 , D , 100 , 0 , 3 , x ")});
    const scriptVarTable entry = entryOf(QStringLiteral("field a"));
    EXPECT_EQ(entry.name, QStringLiteral("field a"));
    EXPECT_EQ(entry.linkName, QStringLiteral("L 1"));
    EXPECT_EQ(entry.station, QStringLiteral("1"));
    EXPECT_EQ(entry.blockName, QStringLiteral("D"));
    EXPECT_EQ(entry.regIndex, QStringLiteral("100"));
    EXPECT_EQ(entry.extra, QStringLiteral("0"));
    EXPECT_EQ(entry.dataType, 3);
    EXPECT_EQ(entry.typeName, QStringLiteral("DATA_TYPE_WD"));
}

TEST(VariableDeclarations, AreSkippedWithFewerThan8Fields)
{
    declare({QStringLiteral("seven,L1,1,D,100,0,3"), QStringLiteral("one"), QString(),
             QStringLiteral("eight,L1,1,D,100,0,3,")});
    EXPECT_FALSE(isDeclared(QStringLiteral("seven")));
    EXPECT_FALSE(isDeclared(QStringLiteral("one")));
    EXPECT_TRUE(isDeclared(QStringLiteral("eight")));
}

TEST(VariableDeclarations, MayHaveMoreFieldsThanAreUsed)
{
    declare({QStringLiteral("ten,L1,1,D,100,0,5,x,y,z")});
    EXPECT_EQ(entryOf(QStringLiteral("ten")).dataType, 5);
}

TEST(VariableDeclarations, WithAnUnknownTypeNumberAreStoredWithoutATypeName)
{
    declare({QStringLiteral("type 8,L1,1,D,100,0,8,x"), QStringLiteral("type -1,L1,1,D,100,0,-1,x")});
    EXPECT_EQ(entryOf(QStringLiteral("type 8")).dataType, 8);
    EXPECT_EQ(entryOf(QStringLiteral("type 8")).typeName, QString());
    EXPECT_EQ(entryOf(QStringLiteral("type -1")).dataType, -1);
    EXPECT_EQ(entryOf(QStringLiteral("type -1")).typeName, QString());
}

TEST(VariableDeclarations, WithATypeThatIsNoIntegerAreBits)
{
    declare({QStringLiteral("type word,L1,1,D,100,0,word,x"), QStringLiteral("type 1.5,L1,1,D,100,0,1.5,x"),
             QStringLiteral("type 0x3,L1,1,D,100,0,0x3,x"), QStringLiteral("type empty,L1,1,D,100,0,,x"),
             QStringLiteral("type big,L1,1,D,100,0,4294967299,x")});
    for (const char *name : {"type word", "type 1.5", "type 0x3", "type empty", "type big"}) {
        SCOPED_TRACE(name);
        const scriptVarTable entry = entryOf(QLatin1String(name));
        EXPECT_EQ(entry.name, QLatin1String(name));
        EXPECT_EQ(entry.dataType, 0);
        EXPECT_EQ(entry.typeName, QStringLiteral("DATA_TYPE_BIT"));
    }
}

TEST(VariableDeclarations, OfTheSameNameReplaceEarlierOnesWhole)
{
    declare({QStringLiteral("twice,L1,1,D,100,9,3,x"), QStringLiteral("twice,L2,2,4x,200,,7,x")});
    scriptVarTable entry = entryOf(QStringLiteral("twice"));
    EXPECT_EQ(entry.linkName, QStringLiteral("L2"));
    EXPECT_EQ(entry.extra, QString());
    EXPECT_EQ(entry.typeName, QStringLiteral("DATA_TYPE_DF"));
    declare({QStringLiteral("twice,L3,3,W,300,1,1,x")});
    entry = entryOf(QStringLiteral("twice"));
    EXPECT_EQ(entry.linkName, QStringLiteral("L3"));
    EXPECT_EQ(entry.dataType, 1);
}

TEST(VariableDeclarations, AreMergedWithThoseOfAnEarlierCall)
{
    declare({QStringLiteral("merged 1,L1,1,D,100,0,3,x")});
    declare({QStringLiteral("merged 2,L1,1,D,101,0,3,x")});
    EXPECT_TRUE(isDeclared(QStringLiteral("merged 1")));
    EXPECT_TRUE(isDeclared(QStringLiteral("merged 2")));
}

TEST(VariableDeclarations, TakeTheNamesWithTheirCase)
{
    declare({QStringLiteral("Case,L1,1,D,100,0,3,x"), QStringLiteral("case,L2,1,D,100,0,3,x")});
    EXPECT_EQ(entryOf(QStringLiteral("Case")).linkName, QStringLiteral("L1"));
    EXPECT_EQ(entryOf(QStringLiteral("case")).linkName, QStringLiteral("L2"));
    EXPECT_FALSE(isDeclared(QStringLiteral("CASE")));
}

TEST(VariableDeclarations, AreReadAsFarAsTheNumberSays)
{
    ProjectNode project(
        {QStringLiteral("within,L1,1,D,100,0,3,x"), QStringLiteral("beyond,L1,1,D,100,0,3,x")});
    object *list = object_get_child(project.tree.root(), "macroVarList");
    for (const int number : {-1, 0}) {
        ObjectTree::setNumber(list, QStringLiteral("number"), number);
        helpMacroLua::initMacroVarTable(project.tree.root());
        EXPECT_FALSE(isDeclared(QStringLiteral("within"))) << number;
    }
    ObjectTree::setNumber(list, QStringLiteral("number"), 1);
    helpMacroLua::initMacroVarTable(project.tree.root());
    EXPECT_TRUE(isDeclared(QStringLiteral("within")));
    EXPECT_FALSE(isDeclared(QStringLiteral("beyond")));
    ObjectTree::setNumber(list, QStringLiteral("number"), 50);
    helpMacroLua::initMacroVarTable(project.tree.root());
    EXPECT_TRUE(isDeclared(QStringLiteral("beyond")));
}

TEST(VariableDeclarations, WithAGapAreReadOnBehindIt)
{
    ProjectNode project({});
    object *list = object_get_child(project.tree.root(), "macroVarList");
    ObjectTree::setNumber(list, QStringLiteral("number"), 3);
    ObjectTree::setText(list, QStringLiteral("var2"), QStringLiteral("behind the gap,L1,1,D,100,0,3,x"));
    helpMacroLua::initMacroVarTable(project.tree.root());
    EXPECT_TRUE(isDeclared(QStringLiteral("behind the gap")));
}

TEST(VariableDeclarations, MayBeMissing)
{
    ObjectTree empty;
    helpMacroLua::initMacroVarTable(empty.root());
    ObjectTree withoutNumber;
    object *list = ObjectTree::appendChild(withoutNumber.root(), QStringLiteral("macroVarList"));
    ObjectTree::setText(list, QStringLiteral("var0"), QStringLiteral("uncounted,L1,1,D,100,0,3,x"));
    helpMacroLua::initMacroVarTable(withoutNumber.root());
    helpMacroLua::initMacroVarTable(nullptr);
    EXPECT_FALSE(isDeclared(QStringLiteral("uncounted")));
}

TEST(VariableDeclarations, WithAnAbsurdNumberEnd)
{
    ProjectNode project({QStringLiteral("of very many,L1,1,D,100,0,3,x")});
    object *list = object_get_child(project.tree.root(), "macroVarList");
    ObjectTree::setNumber(list, QStringLiteral("number"), std::numeric_limits<int>::max());
    helpMacroLua::initMacroVarTable(project.tree.root());
    EXPECT_TRUE(isDeclared(QStringLiteral("of very many")));
}

TEST(DealLuaForVarList, RewritesByTheProcessWideTable)
{
    declare({QStringLiteral("deal temp,L1,1,D,100,0,3,x"), QStringLiteral("deal speed,L2,5,4x,17,2,7,x")});
    QString text = QStringLiteral("if a == b then\n  x = deal temp;\n  deal speed = 3 + 4;\nend\n");
    QMap<QString, scriptVarTable> read;
    helpMacroLua::dealLuaForVarList(text, read);
    EXPECT_EQ(text, QStringLiteral("if a == b then\n"
                                   "x=getdata(\"L1\",\"D\",100,1,0,DATA_TYPE_WD)\n"
                                   "setdata(\"L2\",\"4x\",17,5,2,3 + 4,DATA_TYPE_DF)\n"
                                   "end\n"));
    EXPECT_EQ(QStringList(read.keys()), QStringList(QStringLiteral("deal temp")));
}

TEST(DealLuaForVarList, LeavesATextAsItIsWhenNothingInItIsDeclared)
{
    QString text = QStringLiteral("  x = deal nothing;\r\n");
    QMap<QString, scriptVarTable> read;
    helpMacroLua::dealLuaForVarList(text, read);
    EXPECT_EQ(text, QStringLiteral("  x = deal nothing;\r\n"));
    EXPECT_TRUE(read.isEmpty());
}

TEST(DealLuaForVarList, AllocatesNothingForATextWithoutAVariable)
{
    declare({QStringLiteral("deal unused,L1,1,D,100,0,3,x")});
    QString text = QStringLiteral("a = b;\n").repeated(1000);
    QMap<QString, scriptVarTable> read;
    const panelkit::testing::AllocationCounter counter;
    helpMacroLua::dealLuaForVarList(text, read);
    EXPECT_EQ(counter.count(), 0);
}

TEST(DealLuaForVarList, IsExplainedByTheSameTable)
{
    declare({QStringLiteral("deal explained,L1,1,D,100,0,3,x")});
    const QList<luaLineNote> notes =
        helpMacroLua::explainLuaForVarList(QStringLiteral("x = deal explained\nx = 1"));
    ASSERT_EQ(notes.size(), 2);
    EXPECT_EQ(notes[0].kind, LUA_LINE_READS_VARIABLE);
    EXPECT_EQ(notes[0].variable.linkName, QStringLiteral("L1"));
    EXPECT_EQ(notes[1].kind, LUA_LINE_WITHOUT_VARIABLE);
}

TEST(ItemMacro, OfMode0ReadsNothingElse)
{
    ItemNode item(0);
    item.setText("pressmacro", QStringLiteral("f()"));
    item.setText("releasemacro", QStringLiteral("g()"));
    item.setTextVariables({QStringLiteral("a,1,D,0,0,x")}, 1);
    const LoadedMacro macro(item, 7);
    EXPECT_EQ(macro.macroMode, 0);
    EXPECT_EQ(macro.hasMacro, 0);
    EXPECT_TRUE(macro.pressMacro.isEmpty());
    EXPECT_TRUE(macro.releaseMacro.isEmpty());
    EXPECT_TRUE(macro.textVarList.isEmpty());
    EXPECT_EQ(macro.pressArg, nullptr);
    EXPECT_EQ(macro.releaseArg, nullptr);
}

TEST(ItemMacro, WithoutAModeOrANodeIsOfMode0)
{
    ObjectTree empty;
    itemMacro macro;
    macro.hasMacro = 1;
    macro.macroMode = 3;
    helpMacroLua::loadItemMacro(empty.root(), macro);
    EXPECT_EQ(macro.hasMacro, 0);
    EXPECT_EQ(macro.macroMode, 0);
    macro.hasMacro = 1;
    macro.macroMode = 3;
    helpMacroLua::loadItemMacro(nullptr, macro);
    EXPECT_EQ(macro.hasMacro, 0);
    EXPECT_EQ(macro.macroMode, 0);
}

TEST(ItemMacro, OfMode1ReadsThePressTextAlone)
{
    ItemNode item(1);
    item.setText("pressmacro", QStringLiteral("f()"));
    item.setText("releasemacro", QStringLiteral("g()"));
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.macroMode, 1);
    EXPECT_EQ(macro.hasMacro, 1);
    EXPECT_EQ(macro.pressMacro, QStringLiteral("f()"));
    EXPECT_TRUE(macro.releaseMacro.isEmpty());
    EXPECT_NE(macro.pressArg, nullptr);
    EXPECT_EQ(macro.releaseArg, nullptr);
}

TEST(ItemMacro, OfMode2ReadsTheReleaseTextAlone)
{
    ItemNode item(2);
    item.setText("pressmacro", QStringLiteral("f()"));
    item.setText("releasemacro", QStringLiteral("g()"));
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.macroMode, 2);
    EXPECT_EQ(macro.hasMacro, 1);
    EXPECT_TRUE(macro.pressMacro.isEmpty());
    EXPECT_EQ(macro.releaseMacro, QStringLiteral("g()"));
    EXPECT_EQ(macro.pressArg, nullptr);
    EXPECT_NE(macro.releaseArg, nullptr);
}

TEST(ItemMacro, OfMode3ReadsBothTexts)
{
    ItemNode item(3);
    item.setText("pressmacro", QStringLiteral("f()"));
    item.setText("releasemacro", QStringLiteral("g()"));
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.pressMacro, QStringLiteral("f()"));
    EXPECT_EQ(macro.releaseMacro, QStringLiteral("g()"));
    ASSERT_NE(macro.pressArg, nullptr);
    ASSERT_NE(macro.releaseArg, nullptr);
    EXPECT_NE(macro.pressArg, macro.releaseArg);
}

TEST(ItemMacro, OfMode3ReadsTheReleaseTextBehindAnEmptyPressText)
{
    ItemNode item(3);
    item.setText("releasemacro", QStringLiteral("g()"));
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.hasMacro, 1);
    EXPECT_EQ(macro.pressArg, nullptr);
    EXPECT_EQ(macro.releaseMacro, QStringLiteral("g()"));
    EXPECT_NE(macro.releaseArg, nullptr);
}

TEST(ItemMacro, OfMode1WithAnEmptyPressTextMakesNothingButReadsTheTextVariables)
{
    ItemNode item(1);
    item.setText("pressmacro", QString());
    item.setTextVariables({QStringLiteral("a,1,D,0,0,x")}, 1);
    for (const int before : {0, 1, 7}) {
        const LoadedMacro macro(item, before);
        EXPECT_EQ(macro.hasMacro, before);
        EXPECT_EQ(macro.pressArg, nullptr);
        EXPECT_EQ(macro.textVarList, QStringList(QStringLiteral("a,1,D,0,0,x")));
    }
}

TEST(ItemMacro, OfAnyOtherModeReadsTheTextVariablesAlone)
{
    for (const int mode : {5, 4, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(mode);
        ItemNode item(mode);
        item.setText("pressmacro", QStringLiteral("f()"));
        item.setText("releasemacro", QStringLiteral("g()"));
        item.setTextVariables({QStringLiteral("a,1,D,0,0,x")}, 1);
        const LoadedMacro macro(item, 7);
        EXPECT_EQ(macro.macroMode, mode);
        EXPECT_EQ(macro.hasMacro, 7);
        EXPECT_TRUE(macro.pressMacro.isEmpty());
        EXPECT_TRUE(macro.releaseMacro.isEmpty());
        EXPECT_EQ(macro.pressArg, nullptr);
        EXPECT_EQ(macro.releaseArg, nullptr);
        EXPECT_EQ(macro.textVarList, QStringList(QStringLiteral("a,1,D,0,0,x")));
    }
}

TEST(ItemMacro, CarriesTheAddressOfItsRewrittenTextInAFreshArgument)
{
    declare({QStringLiteral("item temp,L1,1,D,100,0,3,x"), QStringLiteral("item speed,L2,5,4x,17,2,7,x")});
    ItemNode item(3);
    item.setText("pressmacro", QStringLiteral("x = item temp"));
    item.setText("releasemacro", QStringLiteral("y = item speed"));
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.pressMacro, QStringLiteral("x=getdata(\"L1\",\"D\",100,1,0,DATA_TYPE_WD)"));
    EXPECT_EQ(macro.releaseMacro, QStringLiteral("y=getdata(\"L2\",\"4x\",17,5,2,DATA_TYPE_DF)"));
    EXPECT_EQ(QStringList(macro.varMap.keys()),
              (QStringList{QStringLiteral("item speed"), QStringLiteral("item temp")}));

    const struct
    {
        const InterfaceAll *argument;
        const QString *text;
    } sides[] = {{macro.pressArg, &macro.pressMacro}, {macro.releaseArg, &macro.releaseMacro}};
    for (const auto &side : sides) {
        ASSERT_NE(side.argument, nullptr);
        ASSERT_EQ(side.argument->args.size(), 1);
        EXPECT_EQ(side.argument->args[0], side.text);
        panelkit::testing::expectFresh(*side.argument);
    }
}

TEST(ItemMacro, KeepsEmptyTextVariablesAndThoseThatAreMissing)
{
    ItemNode item(5);
    item.setTextVariables({QStringLiteral(" a,1,D,0,0,x "), QString(), QStringLiteral("b")}, 5);
    const LoadedMacro macro(item);
    EXPECT_EQ(macro.textVarList, (QStringList{QStringLiteral(" a,1,D,0,0,x "), QString(), QStringLiteral("b"),
                                              QString(), QString()}));
}

TEST(ItemMacro, ReadsNoTextVariablesWithoutANumberAbove0)
{
    for (const int number : {0, -1}) {
        ItemNode item(5);
        item.setTextVariables({QStringLiteral("a,1,D,0,0,x")}, number);
        EXPECT_TRUE(LoadedMacro(item).textVarList.isEmpty()) << number;
    }
    ItemNode withoutList(1);
    withoutList.setText("pressmacro", QStringLiteral("f()"));
    EXPECT_TRUE(LoadedMacro(withoutList).textVarList.isEmpty());
}

TEST(ItemMacro, WithAnAbsurdNumberOfTextVariablesEndsAtAMillion)
{
    ItemNode item(5);
    item.setTextVariables({QStringLiteral("a")}, std::numeric_limits<int>::max());
    EXPECT_EQ(LoadedMacro(item).textVarList.size(), 1000000);
}

TEST(ItemMacro, LoadedASecondTimeAppendsTextVariablesAndKeepsTheVariablesRead)
{
    declare({QStringLiteral("again 1,L1,1,D,100,0,3,x"), QStringLiteral("again 2,L1,1,D,101,0,3,x")});
    ItemNode first(3);
    first.setText("pressmacro", QStringLiteral("x = again 1"));
    first.setText("releasemacro", QStringLiteral("g()"));
    first.setTextVariables({QStringLiteral("one")}, 1);
    LoadedMacro macro(first);
    const std::unique_ptr<InterfaceAll> earlierPress(macro.pressArg);
    InterfaceAll *earlierRelease = macro.releaseArg;

    ItemNode second(3);
    second.setText("pressmacro", QStringLiteral("x = again 2"));
    second.setTextVariables({QStringLiteral("two")}, 1);
    helpMacroLua::loadItemMacro(second.root(), macro);

    EXPECT_EQ(macro.textVarList, (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(QStringList(macro.varMap.keys()),
              (QStringList{QStringLiteral("again 1"), QStringLiteral("again 2")}));
    EXPECT_EQ(macro.pressMacro, QStringLiteral("x=getdata(\"L1\",\"D\",101,1,0,DATA_TYPE_WD)"));
    EXPECT_TRUE(macro.releaseMacro.isEmpty());
    EXPECT_NE(macro.pressArg, earlierPress.get());
    EXPECT_EQ(macro.releaseArg, earlierRelease);
    ASSERT_EQ(earlierPress->args.size(), 1);
    EXPECT_EQ(earlierPress->args[0], &macro.pressMacro);
}
