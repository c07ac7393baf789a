// The declared script variables, found by a piece of text without making a string of it.
#pragma once

#include "macro/helpmacrolua.h"

#include <cstddef>
#include <vector>

namespace panelkit {

struct ScriptVariable
{
    scriptVarTable entry;
    bool holdsPercent; // one of the texts that go into a call holds "%"
};

// Reads one declaration. False, with `out` untouched, when it has fewer than 8 fields.
bool readDeclaration(const QString &declaration, scriptVarTable &out);

class ScriptVariables
{
public:
    // Adds a variable; one of the same name is replaced whole. Variables found earlier are no longer valid.
    void insert(const scriptVarTable &entry);

    bool isEmpty() const { return m_variables.empty(); }

    // The variable whose name is exactly the text from `begin` to `end`, or null.
    const ScriptVariable *find(const QChar *begin, const QChar *end) const;

    // The same for the text that is left when every ";" in it is dropped.
    const ScriptVariable *findWithoutSemicolons(const QChar *begin, const QChar *end) const;

private:
    struct Slot
    {
        quint32 hash;
        quint32 number; // of the variable, from 1; 0 in an empty slot
    };

    template <typename Dropped>
    const ScriptVariable *lookUp(const QChar *begin, const QChar *end, Dropped isDropped) const;
    void occupy(quint32 hash, quint32 number);
    void grow();

    std::vector<ScriptVariable> m_variables;
    std::vector<Slot> m_slots;     // open addressing; a power of two, at most half of it occupied
    std::ptrdiff_t m_longest = -1; // characters of the longest name
};

} // namespace panelkit
