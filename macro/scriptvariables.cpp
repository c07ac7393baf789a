#include "macro/scriptvariables.h"

#include <algorithm>

namespace panelkit {

namespace {

const quint32 hashStart = 2166136261u;

quint32 hashStep(quint32 hash, QChar character)
{
    return (hash ^ character.unicode()) * 16777619u;
}

// The low bits of the running value depend on the low bits of the characters alone.
quint32 hashEnd(quint32 hash)
{
    return hash ^ (hash >> 15);
}

quint32 hashOf(const QString &name)
{
    quint32 hash = hashStart;
    for (const QChar character : name)
        hash = hashStep(hash, character);
    return hashEnd(hash);
}

} // namespace

bool readDeclaration(const QString &declaration, scriptVarTable &out)
{
    const QStringList fields = declaration.split(QLatin1Char(','));
    if (fields.size() < 8)
        return false;
    out.name = fields[0].trimmed();
    out.linkName = fields[1].trimmed();
    out.station = fields[2].trimmed();
    out.blockName = fields[3].trimmed();
    out.regIndex = fields[4].trimmed();
    out.extra = fields[5].trimmed();
    out.dataType = fields[6].toInt();
    out.typeName = helpMacroLua::VarTableDataTypeConverty(out.dataType);
    return true;
}

void ScriptVariables::insert(const scriptVarTable &entry)
{
    const QChar percent = QLatin1Char('%');
    const ScriptVariable variable = {
        entry, entry.linkName.contains(percent) || entry.blockName.contains(percent) ||
                   entry.regIndex.contains(percent) || entry.station.contains(percent) ||
                   entry.extra.contains(percent) || entry.typeName.contains(percent)};
    const QChar *name = entry.name.constData();
    if (const ScriptVariable *existing = find(name, name + entry.name.size())) {
        m_variables[static_cast<std::size_t>(existing - m_variables.data())] = variable;
        return;
    }
    m_variables.push_back(variable);
    m_longest = std::max<std::ptrdiff_t>(m_longest, entry.name.size());
    if (m_variables.size() * 2 > m_slots.size())
        grow();
    else
        occupy(hashOf(entry.name), static_cast<quint32>(m_variables.size()));
}

const ScriptVariable *ScriptVariables::find(const QChar *begin, const QChar *end) const
{
    return lookUp(begin, end, [](QChar) { return false; });
}

const ScriptVariable *ScriptVariables::findWithoutSemicolons(const QChar *begin, const QChar *end) const
{
    return lookUp(begin, end, [](QChar character) { return character == QLatin1Char(';'); });
}

template <typename Dropped>
const ScriptVariable *ScriptVariables::lookUp(const QChar *begin, const QChar *end, Dropped isDropped) const
{
    quint32 hash = hashStart;
    std::ptrdiff_t length = 0;
    for (const QChar *p = begin; p != end; ++p) {
        if (isDropped(*p))
            continue;
        if (++length > m_longest)
            return nullptr;
        hash = hashStep(hash, *p);
    }
    hash = hashEnd(hash);

    const auto isName = [&](const QString &name) {
        if (name.size() != length)
            return false;
        const QChar *expected = name.constData();
        for (const QChar *p = begin; p != end; ++p)
            if (!isDropped(*p) && *p != *expected++)
                return false;
        return true;
    };
    if (m_slots.empty())
        return nullptr;
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = hash & mask; m_slots[i].number != 0; i = (i + 1) & mask) {
        const ScriptVariable &candidate = m_variables[m_slots[i].number - 1];
        if (m_slots[i].hash == hash && isName(candidate.entry.name))
            return &candidate;
    }
    return nullptr;
}

void ScriptVariables::occupy(quint32 hash, quint32 number)
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t i = hash & mask;
    while (m_slots[i].number != 0)
        i = (i + 1) & mask;
    m_slots[i] = {hash, number};
}

void ScriptVariables::grow()
{
    m_slots.assign(std::max<std::size_t>(16, m_slots.size() * 2), Slot());
    quint32 number = 0;
    for (const ScriptVariable &variable : m_variables)
        occupy(hashOf(variable.entry.name), ++number);
}

} // namespace panelkit
