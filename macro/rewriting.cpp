#include "macro/rewriting.h"

#include <algorithm>
#include <cstddef>

namespace panelkit {

namespace {

const char readCall[] = "getdata(\"%1\",\"%2\",%3,%4,%5,%6)";
const char writeCall[] = "setdata(\"%1\",\"%2\",%3,%4,%5,%6,%7)";

// A call into which values with markers are filled may reach this many characters. Markers in every value
// multiply: without a bound a line of a few hundred characters could ask for all memory there is.
const int longestFilledCall = 65536;

typedef decltype(QString().size()) StringSize; // int up to Qt 5

struct Span
{
    const QChar *begin;
    const QChar *end;
};

std::ptrdiff_t lengthOf(Span span)
{
    return span.end - span.begin;
}

QString toString(Span span)
{
    return QString(span.begin, static_cast<StringSize>(lengthOf(span)));
}

void append(QString &out, Span span)
{
    out.insert(out.size(), span.begin, static_cast<StringSize>(lengthOf(span)));
}

Span spanOf(const QString &text)
{
    return {text.constData(), text.constData() + text.size()};
}

bool contains(Span span, char character)
{
    return std::find(span.begin, span.end, QLatin1Char(character)) != span.end;
}

template <typename Stripped>
Span strip(Span span, Stripped isStripped)
{
    while (span.begin != span.end && isStripped(*span.begin))
        ++span.begin;
    while (span.begin != span.end && isStripped(span.end[-1]))
        --span.end;
    return span;
}

// A line that holds a "=".
struct Line
{
    Span all;
    const QChar *sign; // the first "="
    bool hasOneSign;
};

// Finds the next such line of `text` at or behind `from`, which is the begin of a line.
bool nextLineWithSign(const QString &text, const QChar *from, Line &line)
{
    const QChar lineEnd = QLatin1Char('\n');
    const QChar equals = QLatin1Char('=');
    const Span whole = spanOf(text);
    const StringSize sign = text.indexOf(equals, static_cast<StringSize>(from - whole.begin));
    if (sign < 0)
        return false;
    line.sign = whole.begin + sign;
    line.all.begin = line.sign;
    while (line.all.begin != from && line.all.begin[-1] != lineEnd)
        --line.all.begin;
    const QChar *p = line.sign + 1;
    while (p != whole.end && *p != lineEnd && *p != equals)
        ++p;
    line.hasOneSign = p == whole.end || *p == lineEnd;
    line.all.end = std::find(p, whole.end, lineEnd);
    return true;
}

// The two sides of a line with one "=", and the variable that decides what becomes of it.
struct Assignment
{
    Span left;
    Span right;                     // any ";" that is left stands between other characters
    const ScriptVariable *variable; // or null
    bool isWrite;
};

Assignment readAssignment(const Line &line, const ScriptVariables &variables)
{
    Assignment assignment;
    assignment.left = strip({line.all.begin, line.sign}, [](QChar c) { return c.isSpace(); });
    assignment.right =
        strip({line.sign + 1, line.all.end}, [](QChar c) { return c == QLatin1Char(';') || c.isSpace(); });
    assignment.variable = variables.find(assignment.left.begin, assignment.left.end);
    assignment.isWrite = assignment.variable != nullptr;
    if (!assignment.isWrite)
        assignment.variable = variables.findWithoutSemicolons(assignment.right.begin, assignment.right.end);
    return assignment;
}

QString withoutSemicolons(Span span)
{
    QString text = toString(span);
    text.remove(QLatin1Char(';'));
    return text;
}

// The template with the values in the place of its markers. None of the values holds "%", so that no step of
// a chained substitution would meet a marker of another's.
void fillAtOnce(QString &out, const char *call, const Span *values)
{
    std::ptrdiff_t length = 0;
    for (const char *p = call; *p != '\0'; ++p) {
        if (*p == '%')
            length += lengthOf(values[*++p - '1']);
        else
            ++length;
    }
    const StringSize start = out.size();
    out.resize(start + static_cast<StringSize>(length));
    QChar *target = out.data() + start;
    for (const char *p = call; *p != '\0'; ++p) {
        if (*p == '%') {
            const Span value = values[*++p - '1'];
            target = std::copy(value.begin, value.end, target);
        } else {
            *target++ = QLatin1Char(*p);
        }
    }
}

// How long `text` becomes when its lowest-numbered markers get a value of that length. Which these are, the
// toolkit says itself: its generations differ in what is a digit.
qint64 filledSize(const QString &text, qint64 length)
{
    const qint64 emptied = text.arg(QString()).size();
    const qint64 markers = text.arg(QChar(QLatin1Char('x'))).size() - emptied;
    return emptied + markers * length;
}

// The same by the chain itself. False when markers in the values could make the result longer than the bound
// and than each value filled in once.
bool fillByChain(QString &out, const char *call, const Span *values, int count)
{
    const int markerLength = 2;
    QString filled = QString::fromLatin1(call);
    qint64 coming = 0; // what the next values add, each filled in once
    for (int i = 0; i < count; ++i)
        coming += lengthOf(values[i]) - markerLength;
    const qint64 bound = qMax<qint64>(longestFilledCall, filled.size() + coming);
    for (int i = 0; i < count; ++i) {
        const qint64 length = lengthOf(values[i]);
        coming -= length - markerLength;
        // Mostly there are so few "%" that none of them has to be looked at.
        const qint64 most = filled.size() + filled.count(QLatin1Char('%')) * length;
        if (most + coming > bound && filledSize(filled, length) + coming > bound)
            return false;
        filled = filled.arg(toString(values[i]));
    }
    out.append(filled);
    return true;
}

// Appends what the line becomes. False, with `out` as it was, when it is left as it is after all.
bool appendCall(QString &out, const Assignment &assignment)
{
    const scriptVarTable &entry = assignment.variable->entry;
    Span values[7] = {spanOf(entry.linkName), spanOf(entry.blockName), spanOf(entry.regIndex),
                      spanOf(entry.station),  spanOf(entry.extra),     spanOf(entry.typeName)};
    QString value;
    int count = 6;
    bool holdsPercent = assignment.variable->holdsPercent;
    if (assignment.isWrite) {
        values[count++] = values[5];
        values[5] = assignment.right;
        if (contains(assignment.right, ';')) {
            value = withoutSemicolons(assignment.right);
            values[5] = spanOf(value);
        }
        holdsPercent = holdsPercent || contains(assignment.right, '%');
    }
    const char *call = assignment.isWrite ? writeCall : readCall;
    const StringSize start = out.size();
    if (!assignment.isWrite) {
        append(out, assignment.left);
        out.append(QLatin1Char('='));
    }
    if (!holdsPercent) {
        fillAtOnce(out, call, values);
        return true;
    }
    if (fillByChain(out, call, values, count))
        return true;
    out.truncate(start);
    return false;
}

luaLineNote noteOf(const Line &line, const ScriptVariables &variables)
{
    luaLineNote note;
    note.kind = LUA_LINE_WITH_MANY_SIGNS;
    if (!line.hasOneSign)
        return note;
    const Assignment assignment = readAssignment(line, variables);
    note.left = toString(assignment.left);
    note.right = withoutSemicolons(assignment.right);
    note.kind = LUA_LINE_WITHOUT_VARIABLE;
    if (assignment.variable == nullptr)
        return note;
    note.variable = assignment.variable->entry;
    QString call;
    if (!appendCall(call, assignment))
        note.kind = LUA_LINE_GROWS_TOO_LONG;
    else
        note.kind = assignment.isWrite ? LUA_LINE_WRITES_VARIABLE : LUA_LINE_READS_VARIABLE;
    return note;
}

} // namespace

void rewriteMacro(QString &text, const ScriptVariables &variables, QMap<QString, scriptVarTable> &read)
{
    if (variables.isEmpty())
        return;
    const Span whole = spanOf(text);
    QString result;
    const QChar *copied = whole.begin; // what stands before it is in `result`
    Line line;
    for (const QChar *from = whole.begin; nextLineWithSign(text, from, line);) {
        from = line.all.end == whole.end ? whole.end : line.all.end + 1;
        if (!line.hasOneSign)
            continue;
        const Assignment assignment = readAssignment(line, variables);
        if (assignment.variable == nullptr)
            continue;
        if (copied == whole.begin)
            result.reserve(text.size() + text.size() / 4);
        append(result, {copied, line.all.begin});
        copied = line.all.begin;
        if (!appendCall(result, assignment))
            continue;
        copied = line.all.end;
        if (!assignment.isWrite)
            read.insert(assignment.variable->entry.name, assignment.variable->entry);
    }
    if (copied == whole.begin)
        return;
    append(result, {copied, whole.end});
    result.squeeze();
    text = result;
}

QList<luaLineNote> explainMacro(const QString &text, const ScriptVariables &variables)
{
    QList<luaLineNote> notes;
    const Span whole = spanOf(text);
    Line line;
    for (const QChar *from = whole.begin;; from = line.all.end + 1) {
        const bool isFound = nextLineWithSign(text, from, line);
        const QChar *plainEnd = isFound ? line.all.begin : whole.end;
        for (auto ends = std::count(from, plainEnd, QLatin1Char('\n')); ends > 0; --ends)
            notes.append(luaLineNote());
        notes.append(isFound ? noteOf(line, variables) : luaLineNote());
        if (!isFound || line.all.end == whole.end)
            return notes;
    }
}

} // namespace panelkit
