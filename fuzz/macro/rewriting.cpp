// Declarations of script variables, one a line, up to the first NUL; behind it a macro. Both are UTF-8.

#include "macro/rewriting.h"
#include "tests/macro/plainrewriting.h"

#include <QStringList>

#include <cstddef>
#include <cstdint>

using namespace panelkit;

namespace {

void expect(bool isTrue)
{
    if (!isTrue)
        __builtin_trap();
}

bool isCall(LUA_LINE_KIND kind)
{
    return kind == LUA_LINE_READS_VARIABLE || kind == LUA_LINE_WRITES_VARIABLE;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString text = input.section(QChar(0), 1);
    QMap<QString, scriptVarTable> table;
    ScriptVariables variables;
    for (const QString &declaration : input.section(QChar(0), 0, 0).split(QLatin1Char('\n'))) {
        scriptVarTable entry;
        if (!readDeclaration(declaration, entry))
            continue;
        table.insert(entry.name, entry);
        variables.insert(entry);
    }

    QString rewritten = text;
    QMap<QString, scriptVarTable> read;
    rewriteMacro(rewritten, variables, read);

    const QStringList before = text.split(QLatin1Char('\n'));
    const QStringList after = rewritten.split(QLatin1Char('\n'));
    const QList<luaLineNote> notes = explainMacro(text, variables);
    expect(after.size() == before.size() && notes.size() == before.size());
    bool isBounded = false;
    for (int line = 0; line < before.size(); ++line) {
        expect(isCall(notes.at(line).kind) || after.at(line) == before.at(line));
        isBounded = isBounded || notes.at(line).kind == LUA_LINE_GROWS_TOO_LONG;
    }
    if (isBounded) // the plain way has no bound
        return 0;
    QMap<QString, scriptVarTable> plainRead;
    expect(rewritten == testing::plainRewriting(text, table, plainRead));
    expect(read.keys() == plainRead.keys());
    return 0;
}
