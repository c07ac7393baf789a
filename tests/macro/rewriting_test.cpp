#include "macro/rewriting.h"
#include "tests/macro/plainrewriting.h"
#include "tests/support/allocationcounter.h"

#include <QFile>
#include <QHash>
#include <QVector>

#include <gtest/gtest.h>

#include <random>

using namespace panelkit;
using namespace panelkit::testing;

namespace {

const QString readOfTemp = QStringLiteral("getdata(\"L1\",\"D\",100,1,0,DATA_TYPE_WD)");

scriptVarTable declared(const QString &declaration)
{
    scriptVarTable entry;
    EXPECT_TRUE(readDeclaration(declaration, entry)) << qPrintable(declaration);
    return entry;
}

ScriptVariables variablesOf(const QStringList &declarations)
{
    ScriptVariables variables;
    for (const QString &declaration : declarations)
        variables.insert(declared(declaration));
    return variables;
}

const QStringList tempAndSpeed = {QStringLiteral("temp,L1,1,D,100,0,3,x"),
                                  QStringLiteral("speed,L2,5,4x,17,2,7,x")};

QString rewritten(QString text, const ScriptVariables &variables)
{
    QMap<QString, scriptVarTable> read;
    rewriteMacro(text, variables, read);
    return text;
}

bool isSameVariable(const scriptVarTable &a, const scriptVarTable &b)
{
    return a.name == b.name && a.linkName == b.linkName && a.station == b.station &&
           a.blockName == b.blockName && a.regIndex == b.regIndex && a.extra == b.extra &&
           a.typeName == b.typeName && a.dataType == b.dataType;
}

// The escapes are described at the head of the data file.
QString unescaped(const QString &text)
{
    static const QHash<QChar, int> numbers = {
        {QLatin1Char('x'), 2}, {QLatin1Char('u'), 4}, {QLatin1Char('U'), 8}};
    static const QHash<QChar, char> characters = {{QLatin1Char('n'), '\n'}, {QLatin1Char('r'), '\r'},
                                                  {QLatin1Char('t'), '\t'}, {QLatin1Char('f'), '\f'},
                                                  {QLatin1Char('v'), '\v'}, {QLatin1Char('0'), '\0'},
                                                  {QLatin1Char('\\'), '\\'}};
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('\\')) {
            out += text[i];
            continue;
        }
        const QChar kind = text[++i];
        if (numbers.contains(kind)) {
            const char32_t code = text.mid(i + 1, numbers[kind]).toUInt(nullptr, 16);
            out += QString::fromUcs4(&code, 1);
            i += numbers[kind];
        } else {
            EXPECT_TRUE(characters.contains(kind)) << qPrintable(text);
            out += QLatin1Char(characters[kind]);
        }
    }
    return out;
}

struct Row
{
    QString name, set, text, result;
    QStringList read;
};

struct Table
{
    QHash<QString, ScriptVariables> sets;
    QVector<Row> rows;
};

Table readTable()
{
    Table table;
    QFile file(QStringLiteral(PANELKIT_TEST_DATA "/rewriting.tsv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields[0] == QLatin1String("declare") && fields.size() == 3) {
            table.sets[fields[1]].insert(declared(fields[2]));
        } else if (fields[0] == QLatin1String("row") && fields.size() == 6) {
            Row row = {fields[1], fields[2], unescaped(fields[3]), unescaped(fields[4]), {}};
            if (fields[4] == QLatin1String("~"))
                row.result = row.text;
            if (fields[5] == QLatin1String("\"\""))
                row.read = QStringList(QString());
            else if (fields[5] != QLatin1String("-"))
                row.read = fields[5].split(QLatin1Char(','));
            table.rows.append(row);
        } else {
            ADD_FAILURE() << "not understood: " << qPrintable(line);
        }
    }
    return table;
}

// Texts and variables of the pieces that the rewriting looks at, in any order.
class RandomMacros
{
public:
    QMap<QString, scriptVarTable> variables()
    {
        QMap<QString, scriptVarTable> table;
        const int count = number(0, 6);
        for (int i = 0; i < count; ++i) {
            scriptVarTable entry;
            entry.name = oneOf(names);
            for (QString *field :
                 {&entry.linkName, &entry.station, &entry.blockName, &entry.regIndex, &entry.extra})
                *field = number(0, 2) == 0 ? pieces(values, 4)
                                           : oneOf({QStringLiteral("L1"), QStringLiteral("7")});
            entry.dataType = number(-1, 8);
            entry.typeName = helpMacroLua::VarTableDataTypeConverty(entry.dataType);
            table.insert(entry.name, entry);
        }
        return table;
    }

    QString text() { return pieces(number(0, 1) == 0 ? texts : assignments, 30); }

private:
    int number(int first, int last) { return std::uniform_int_distribution<int>(first, last)(m_engine); }

    QString oneOf(const QStringList &list) { return list[number(0, static_cast<int>(list.size()) - 1)]; }

    QString pieces(const QStringList &list, int most)
    {
        QString out;
        for (int count = number(0, most); count > 0; --count)
            out += oneOf(list);
        return out;
    }

    std::mt19937 m_engine{20240607};
    const QStringList names = {QStringLiteral("a"),
                               QStringLiteral("b"),
                               QStringLiteral("a b"),
                               QStringLiteral("温"),
                               QStringLiteral("a%1"),
                               QStringLiteral("a;b"),
                               QString(),
                               QStringLiteral("long name"),
                               QStringLiteral("aa")};
    const QStringList values = {QStringLiteral("%"), QStringLiteral("L"),    QStringLiteral("0"),
                                QStringLiteral("1"), QStringLiteral("2"),    QStringLiteral("3"),
                                QStringLiteral("5"), QStringLiteral("7"),    QStringLiteral("9"),
                                QStringLiteral("x"), QString(QChar(0x0662)), QStringLiteral("%L2")};
    const QStringList texts =
        names + values + QStringList{QStringLiteral("="),   QStringLiteral("=="), QStringLiteral(";"),
                                     QStringLiteral(" "),   QStringLiteral("\t"), QStringLiteral("\n"),
                                     QStringLiteral("\r"),  QStringLiteral("\n"), QString(QChar(0x3000)),
                                     QString(QChar(0xa0)),  QString(QChar(0)),    QString(QChar(0x85)),
                                     QString(QChar(0xd800))};
    const QStringList assignments = {
        QStringLiteral("a"),   QStringLiteral("b"),  QStringLiteral("温"),     QStringLiteral("="),
        QStringLiteral("="),   QStringLiteral(" "),  QStringLiteral("\n"),     QStringLiteral("\n"),
        QStringLiteral(";"),   QStringLiteral("%5"), QStringLiteral("\na = "), QStringLiteral("\nx = b;"),
        QStringLiteral("%12"), QStringLiteral("x")};
};

ScriptVariables indexed(const QMap<QString, scriptVarTable> &table)
{
    ScriptVariables variables;
    for (const scriptVarTable &entry : table)
        variables.insert(entry);
    return variables;
}

} // namespace

TEST(Rewriting, DoesWhatEachRowOfTheTableSays)
{
    const Table table = readTable();
    ASSERT_GE(table.rows.size(), 200);
    for (const Row &row : table.rows) {
        SCOPED_TRACE(qPrintable(row.name));
        QString text = row.text;
        QMap<QString, scriptVarTable> read;
        rewriteMacro(text, table.sets.value(row.set), read);
        EXPECT_EQ(text, row.result) << "\n  " << qPrintable(text) << "\n  " << qPrintable(row.result);
        EXPECT_EQ(QStringList(read.keys()), row.read);
    }
}

TEST(Rewriting, LeavesEverythingAsItIsWithoutVariables)
{
    EXPECT_EQ(rewritten(QStringLiteral("x = temp;"), ScriptVariables()), QStringLiteral("x = temp;"));
}

TEST(Rewriting, EntersTheWholeVariableThatALineReads)
{
    QString text = QStringLiteral("  x = speed;");
    QMap<QString, scriptVarTable> read;
    rewriteMacro(text, variablesOf(tempAndSpeed), read);
    ASSERT_EQ(QStringList(read.keys()), QStringList(QStringLiteral("speed")));
    const scriptVarTable entry = read.value(QStringLiteral("speed"));
    EXPECT_EQ(entry.name, QStringLiteral("speed"));
    EXPECT_EQ(entry.linkName, QStringLiteral("L2"));
    EXPECT_EQ(entry.station, QStringLiteral("5"));
    EXPECT_EQ(entry.blockName, QStringLiteral("4x"));
    EXPECT_EQ(entry.regIndex, QStringLiteral("17"));
    EXPECT_EQ(entry.extra, QStringLiteral("2"));
    EXPECT_EQ(entry.typeName, QStringLiteral("DATA_TYPE_DF"));
    EXPECT_EQ(entry.dataType, 7);
}

TEST(Rewriting, KeepsOtherEntriesAndReplacesAnEarlierOneOfTheSameName)
{
    QMap<QString, scriptVarTable> read;
    read.insert(QStringLiteral("other"), declared(QStringLiteral("other,L9,9,X,9,9,0,x")));
    read.insert(QStringLiteral("temp"), declared(QStringLiteral("temp,old,9,X,9,9,0,x")));
    QString text = QStringLiteral("x = temp");
    rewriteMacro(text, variablesOf(tempAndSpeed), read);
    EXPECT_EQ(QStringList(read.keys()), (QStringList{QStringLiteral("other"), QStringLiteral("temp")}));
    EXPECT_EQ(read.value(QStringLiteral("temp")).linkName, QStringLiteral("L1"));
    EXPECT_EQ(read.value(QStringLiteral("other")).linkName, QStringLiteral("L9"));
}

TEST(Rewriting, LeavesOtherCopiesOfTheTextAlone)
{
    const QString original = QStringLiteral("x = temp");
    QString text = original;
    QMap<QString, scriptVarTable> read;
    rewriteMacro(text, variablesOf(tempAndSpeed), read);
    EXPECT_EQ(text, QStringLiteral("x=") + readOfTemp);
    EXPECT_EQ(original, QStringLiteral("x = temp"));
}

TEST(Rewriting, DoesWhatTheToolkitsPlainStepsDo)
{
    RandomMacros macros;
    int rewrittenTexts = 0;
    for (int i = 0; i < 50000; ++i) {
        const QMap<QString, scriptVarTable> table = macros.variables();
        const QString text = macros.text();
        QMap<QString, scriptVarTable> expectedRead, read;
        const QString expected = plainRewriting(text, table, expectedRead);
        QString result = text;
        rewriteMacro(result, indexed(table), read);
        ASSERT_EQ(result, expected) << qPrintable(text);
        ASSERT_EQ(QStringList(read.keys()), QStringList(expectedRead.keys())) << qPrintable(text);
        for (auto it = read.constBegin(); it != read.constEnd(); ++it)
            ASSERT_TRUE(isSameVariable(it.value(), expectedRead.value(it.key()))) << qPrintable(it.key());
        rewrittenTexts += result != text;
    }
    EXPECT_GT(rewrittenTexts, 5000); // else the texts are no test of anything
}

TEST(Rewriting, KeepsTheNumberOfLinesAndEachLineWithoutOneSign)
{
    RandomMacros macros;
    int untouched = 0;
    for (int i = 0; i < 20000; ++i) {
        const ScriptVariables variables = indexed(macros.variables());
        const QString text = macros.text();
        const QStringList before = text.split(QLatin1Char('\n'));
        const QStringList after = rewritten(text, variables).split(QLatin1Char('\n'));
        ASSERT_EQ(after.size(), before.size()) << qPrintable(text);
        for (int line = 0; line < before.size(); ++line) {
            if (before[line].count(QLatin1Char('=')) == 1)
                continue;
            ++untouched;
            ASSERT_EQ(after[line], before[line]) << qPrintable(text);
        }
    }
    EXPECT_GT(untouched, 20000);
}

TEST(Rewriting, AllocatesNothingForATextWithoutAVariable)
{
    ScriptVariables variables = variablesOf(tempAndSpeed);
    variables.insert(declared(QStringLiteral("marked,%5,1,D,100,0,3,x")));
    QString text;
    for (int i = 0; i < 500; ++i)
        text += QStringLiteral(
            "-- step\n  local a = b + c;\nif temp == speed then\nx = a; f()\n te;mp = sp;eed2\n\r\n"
            "  x = a % 2\n");
    const QChar *data = text.constData();
    QMap<QString, scriptVarTable> read;
    const AllocationCounter counter;
    rewriteMacro(text, variables, read);
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(text.constData(), data);
}

TEST(Rewriting, HoldsNoMoreMemoryThanTheTextTakes)
{
    QString text = QStringLiteral("x = temp\n").repeated(1000);
    QMap<QString, scriptVarTable> read;
    rewriteMacro(text, variablesOf(tempAndSpeed), read);
    EXPECT_LE(text.capacity(), text.size() + 16);
}

TEST(Rewriting, LeavesALineThatItsMarkersMultiplyBeyondTheBound)
{
    scriptVarTable entry = declared(QStringLiteral("grows,L1,1,D,100,0,3,x"));
    entry.linkName = QStringLiteral("%2").repeated(100);
    entry.blockName = QStringLiteral("%3").repeated(100);
    entry.regIndex = QStringLiteral("%4").repeated(100);
    entry.station = QStringLiteral("%5").repeated(100);
    entry.extra = QStringLiteral("%6").repeated(100);
    ScriptVariables variables = variablesOf(tempAndSpeed);
    variables.insert(entry);
    QMap<QString, scriptVarTable> read;
    QString text = QStringLiteral("  x = grows;\ny = temp\n  grows = 1\n");
    rewriteMacro(text, variables, read);
    EXPECT_EQ(text, QStringLiteral("  x = grows;\ny=") + readOfTemp + QStringLiteral("\n  grows = 1\n"));
    EXPECT_EQ(QStringList(read.keys()), QStringList(QStringLiteral("temp")));
}

TEST(Rewriting, FillsInALineUpToTheBound)
{
    // Around the link and the ten times that the block is filled in, the call has 35 characters.
    scriptVarTable entry = declared(QStringLiteral("long,L1,1,D,100,0,3,x"));
    entry.blockName = QString(6550, QLatin1Char('B'));
    const QString line = QStringLiteral("x = long");
    for (const int letters : {1, 2}) {
        SCOPED_TRACE(letters);
        entry.linkName = QString(letters, QLatin1Char('L')) + QStringLiteral("%2").repeated(9);
        ScriptVariables variables;
        variables.insert(entry);
        const QString call = QStringLiteral("getdata(\"") + QString(letters, QLatin1Char('L')) +
                             entry.blockName.repeated(9) + QStringLiteral("\",\"") + entry.blockName +
                             QStringLiteral("\",100,1,0,DATA_TYPE_WD)");
        EXPECT_EQ(call.size(), 65535 + letters);
        EXPECT_TRUE(rewritten(line, variables) == (letters == 1 ? QStringLiteral("x=") + call : line));
    }
}

// Only what markers lengthen is bounded.
TEST(Rewriting, FillsInLongLinesWithPercentsThatAreNoMarkers)
{
    const struct
    {
        const char *name;
        QString value;
    } rows[] = {
        {"one behind a long text",
         QLatin1Char('"') + QString(33000, QLatin1Char('v')) + QLatin1String("%d\"")},
        {"one behind a text beyond the bound", QString(200000, QLatin1Char('v')) + QLatin1String(" % 60")},
        {"many in a format",
         QLatin1String("string.format(\"") + QStringLiteral("%d,").repeated(6000) + QLatin1String("\", a)")},
        {"nothing else", QString(70000, QLatin1Char('%'))},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_TRUE(rewritten(QStringLiteral("temp = ") + row.value, variablesOf(tempAndSpeed)) ==
                    QStringLiteral("setdata(\"L1\",\"D\",100,1,0,") + row.value +
                        QStringLiteral(",DATA_TYPE_WD)"));
    }
}

TEST(Rewriting, FillsInTheFewMarkersOfALongLine)
{
    const QString text = QString(50000, QLatin1Char('v'));
    EXPECT_TRUE(
        rewritten(QStringLiteral("temp = %7") + text + QStringLiteral("%8%d"), variablesOf(tempAndSpeed)) ==
        QStringLiteral("setdata(\"L1\",\"D\",100,1,0,DATA_TYPE_WD") + text +
            QStringLiteral("%8%d,DATA_TYPE_WD)"));
}

TEST(Rewriting, FillsInLongValuesWithoutMarkers)
{
    const QString value = QStringLiteral("\"") + QString(200000, QLatin1Char('v')) + QStringLiteral("\"");
    EXPECT_EQ(rewritten(QStringLiteral("temp = ") + value, variablesOf(tempAndSpeed)),
              QStringLiteral("setdata(\"L1\",\"D\",100,1,0,") + value + QStringLiteral(",DATA_TYPE_WD)"));
}

TEST(Rewriting, TellsNamesOfOneHashApart)
{
    // Each pair has one 32-bit hash in the table of variables: once with names of one length, once without.
    const struct
    {
        const char *declared, *other;
    } rows[] = {{"jvqpfqg", "jaczypz"}, {"belt_valve_300", "pressdrain124"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.declared);
        const QString assignment = QStringLiteral("x = ");
        const ScriptVariables variables =
            variablesOf({QLatin1String(row.declared) + QStringLiteral(",L1,1,D,100,0,3,x")});
        EXPECT_EQ(rewritten(assignment + QLatin1String(row.declared), variables),
                  QStringLiteral("x=") + readOfTemp);
        EXPECT_EQ(rewritten(assignment + QLatin1String(row.other), variables),
                  assignment + QLatin1String(row.other));
        const ScriptVariables longer =
            variablesOf({QLatin1String(row.declared) + QStringLiteral(",L1,1,D,100,0,3,x"),
                         QStringLiteral("a_much_longer_name,L,1,D,1,0,3,x")});
        EXPECT_EQ(rewritten(assignment + QLatin1String(row.other), longer),
                  assignment + QLatin1String(row.other));
    }
}

TEST(Rewriting, KnowsADeclarationByItsEightFields)
{
    scriptVarTable entry;
    EXPECT_TRUE(readDeclaration(QStringLiteral("temp,L1,1,D,100,0,3,x"), entry));
    EXPECT_FALSE(readDeclaration(QStringLiteral("temp,L1,1,D,100,0,3"), entry));
    EXPECT_FALSE(readDeclaration(QString(), entry));
}

TEST(Rewriting, FindsEachOfManyVariables)
{
    ScriptVariables variables;
    for (int i = 0; i < 3000; ++i)
        variables.insert(declared(QStringLiteral("v%1,L1,1,D,%1,0,3,x").arg(i)));
    for (int i = 0; i < 3000; ++i) {
        const QString number = QString::number(i);
        ASSERT_EQ(rewritten(QStringLiteral("x = v") + number, variables),
                  QStringLiteral("x=getdata(\"L1\",\"D\",") + number + QStringLiteral(",1,0,DATA_TYPE_WD)"));
    }
    EXPECT_EQ(rewritten(QStringLiteral("x = v3000"), variables), QStringLiteral("x = v3000"));
}

TEST(Explanation, SaysForEachLineWhatBecomesOfIt)
{
    ScriptVariables variables = variablesOf(tempAndSpeed);
    scriptVarTable grows = declared(QStringLiteral("grows,L1,1,D,100,0,3,x"));
    grows.linkName = QStringLiteral("%6").repeated(40000);
    variables.insert(grows);
    const QList<luaLineNote> notes = explainMacro(
        QStringLiteral(
            "-- start\n\n  x = te;mp;\nspeed = temp\nif x == temp then\n y = x;\nx = grows\nend\n"),
        variables);
    const struct
    {
        LUA_LINE_KIND kind;
        const char *left, *right, *variable;
    } expected[] = {
        {LUA_LINE_WITHOUT_ASSIGNMENT, "", "", ""},
        {LUA_LINE_WITHOUT_ASSIGNMENT, "", "", ""},
        {LUA_LINE_READS_VARIABLE, "x", "temp", "temp"},
        {LUA_LINE_WRITES_VARIABLE, "speed", "temp", "speed"},
        {LUA_LINE_WITH_MANY_SIGNS, "", "", ""},
        {LUA_LINE_WITHOUT_VARIABLE, "y", "x", ""},
        {LUA_LINE_GROWS_TOO_LONG, "x", "grows", "grows"},
        {LUA_LINE_WITHOUT_ASSIGNMENT, "", "", ""},
        {LUA_LINE_WITHOUT_ASSIGNMENT, "", "", ""},
    };
    ASSERT_EQ(static_cast<std::size_t>(notes.size()), std::size(expected));
    for (int i = 0; i < notes.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(notes[i].kind, expected[i].kind);
        EXPECT_EQ(notes[i].left, QLatin1String(expected[i].left));
        EXPECT_EQ(notes[i].right, QLatin1String(expected[i].right));
        EXPECT_EQ(notes[i].variable.name, QLatin1String(expected[i].variable));
    }
}

TEST(Explanation, AgreesWithTheRewritingOnEveryLine)
{
    RandomMacros macros;
    for (int i = 0; i < 20000; ++i) {
        const ScriptVariables variables = indexed(macros.variables());
        const QString text = macros.text();
        const QStringList before = text.split(QLatin1Char('\n'));
        const QStringList after = rewritten(text, variables).split(QLatin1Char('\n'));
        const QList<luaLineNote> notes = explainMacro(text, variables);
        ASSERT_EQ(notes.size(), before.size()) << qPrintable(text);
        for (int line = 0; line < notes.size(); ++line) {
            const LUA_LINE_KIND kind = notes[line].kind;
            const bool isCall = kind == LUA_LINE_READS_VARIABLE || kind == LUA_LINE_WRITES_VARIABLE;
            ASSERT_EQ(isCall, after[line] != before[line]) << qPrintable(text) << " line " << line;
            ASSERT_EQ(kind == LUA_LINE_WRITES_VARIABLE,
                      isCall && after[line].startsWith(QLatin1String("setdata(")))
                << qPrintable(text) << " line " << line;
        }
    }
}
