// What it costs to make a macro ready for the script engine.

#include "bench/support/comparison.h"
#include "macro/rewriting.h"
#include "tests/macro/plainrewriting.h"

using namespace panelkit;
using namespace panelkit::bench;

namespace {

using Table = QMap<QString, scriptVarTable>;

constexpr int variableCount = 200;

Table declaredVariables()
{
    Table table;
    for (int i = 0; i < variableCount; ++i) {
        scriptVarTable entry;
        readDeclaration(QStringLiteral("variable%1,Line PLC,1,4x,%2,0,%3,").arg(i).arg(100 + i).arg(i % 8),
                        entry);
        table.insert(entry.name, entry);
    }
    return table;
}

ScriptVariables indexed(const Table &table)
{
    ScriptVariables variables;
    for (const scriptVarTable &entry : table)
        variables.insert(entry);
    return variables;
}

// One line in ten is an assignment that hits, a read and a write in turn; two more are assignments that do
// not.
QString macroOf(int lineCount, bool hasHits, bool hasPercents = false)
{
    const char *const others[] = {"    if a == b then\n",
                                  "    local c = a + b\n",
                                  "-- slowly, for the pump\n",
                                  "    end\n",
                                  "\n",
                                  "    total = total + c;\n",
                                  "    step(a, b, total)\n",
                                  "    while total < 100 do\n",
                                  "    end -- of the loop\n"};
    QString text;
    for (int line = 0; line < lineCount; ++line) {
        const int number = line / 10;
        const QString name =
            QStringLiteral("variable%1").arg(number % variableCount + (hasHits ? 0 : variableCount));
        if (line % 10 != 0)
            text += QLatin1String(others[line % 10 - 1]);
        else if (number % 2 != 0)
            text += QStringLiteral("    local x = ") + name + QStringLiteral(";\n");
        else
            text += QStringLiteral("    ") + name +
                    QLatin1String(hasPercents ? " = total % 60;\n" : " = total * 60;\n");
    }
    return text;
}

struct Rewritten
{
    QString text;
    Table read;

    bool operator==(const Rewritten &other) const
    {
        return text == other.text && QStringList(read.keys()) == QStringList(other.read.keys());
    }
};

// What Qt gives to one who avoids texts in between where he can.
void carefulRewriting(QString &text, const Table &table, Table &read)
{
    QString result;
    result.reserve(text.size() + text.size() / 4);
    for (int begin = 0; begin <= text.size();) {
        int end = static_cast<int>(text.indexOf(QLatin1Char('\n'), begin));
        if (end < 0)
            end = static_cast<int>(text.size());
        const QString line = text.mid(begin, end - begin);
        if (begin > 0)
            result += QLatin1Char('\n');
        begin = end + 1;

        const auto sign = line.indexOf(QLatin1Char('='));
        const bool isAssignment = sign >= 0 && line.indexOf(QLatin1Char('='), sign + 1) < 0;
        const QString left = isAssignment ? line.left(sign).trimmed() : QString();
        const QString right =
            isAssignment ? line.mid(sign + 1).remove(QLatin1Char(';')).trimmed() : QString();
        const auto written = isAssignment ? table.constFind(left) : table.constEnd();
        const auto variable = isAssignment && written == table.constEnd() ? table.constFind(right) : written;
        if (variable == table.constEnd()) {
            result += line;
            continue;
        }
        const bool isWrite = written != table.constEnd();
        QString call = isWrite ? QStringLiteral("setdata(\"%1\",\"%2\",%3,%4,%5,%6,%7)")
                               : QStringLiteral("getdata(\"%1\",\"%2\",%3,%4,%5,%6)");
        call = call.arg(variable->linkName)
                   .arg(variable->blockName)
                   .arg(variable->regIndex)
                   .arg(variable->station)
                   .arg(variable->extra);
        if (isWrite) {
            result += call.arg(right).arg(variable->typeName);
        } else {
            result += left + QLatin1Char('=') + call.arg(variable->typeName);
            read.insert(variable->name, *variable);
        }
    }
    text = result;
}

void compareRewriting(const Job &job, const QString &text)
{
    static const Table table = declaredVariables();
    static const ScriptVariables variables = indexed(table);
    const auto way = [text](auto rewrite) {
        return [text, rewrite](Rewritten &answer) {
            answer = Rewritten();
            answer.text = text;
            rewrite(answer.text, answer.read);
        };
    };
    compare<Rewritten>(
        job, way([](QString &out, Table &read) { out = testing::plainRewriting(out, table, read); }),
        way([](QString &out, Table &read) { carefulRewriting(out, table, read); }),
        way([](QString &out, Table &read) { rewriteMacro(out, variables, read); }));
}

} // namespace

int main(int argc, char **argv)
{
    compareRewriting({"100 lines", 6}, macroOf(100, true));
    compareRewriting({"2,000 lines", 6, -1, 16}, macroOf(2000, true));
    compareRewriting({"2,000 lines, \"%\" in values", 0, -1, 16}, macroOf(2000, true, true));
    compareRewriting({"100,000 lines", 6, -1, 1}, macroOf(100'000, true));
    compareRewriting({"2,000 lines without a hit", 6, 0, 16}, macroOf(2000, false));
    return run(argc, argv);
}
