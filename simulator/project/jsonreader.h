// Reads the values of a JSON document one by one, each checked, and keeps the first fault with its path.
#pragma once

#include "simulator/project/projectfile.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>

namespace panelkit::simulator {

// Where the first fault of a reading is kept.
class FaultSlot
{
public:
    bool isEmpty() const { return !m_fault; }
    const ProjectError &fault() const { return *m_fault; }
    void refuse(const QString &where, const QString &found, const QString &expected);

private:
    std::optional<ProjectError> m_fault;
};

// A text for a message: in quotes, control characters escaped, cut when long.
QString quoted(const QString &text);

// A value for a message: 12, "text", null, an object ...; a missing value is "nothing".
QString described(const QJsonValue &value);

// What a text must be like; `description` says it all in words.
struct TextRule
{
    int maximumLength;
    const char *forbidden; // these characters, and every control character
    bool isLatin1;
    bool isCode; // may be empty, hold tabs, and begin or end with blanks
    const char *description;
};

// The values of one object by key. A key without a default must be there. After a fault every reading
// function gives its default (or 0, or an empty value), so that a caller looks at ok() only before it uses
// what it read to look further.
class ObjectReader
{
public:
    // Refuses a value that is no object.
    ObjectReader(const QJsonValue &value, const QString &path, FaultSlot &faults);

    bool ok() const { return m_faults.isEmpty() && m_missing.isEmpty(); }

    int integer(const char *key, int minimum, int maximum, std::optional<int> fallback = std::nullopt);
    bool boolean(const char *key, bool fallback);
    QString text(const char *key, const TextRule &rule);
    QStringList texts(const char *key, const TextRule &rule); // an array of texts; missing: empty
    QJsonArray array(const char *key);                        // missing: empty

    // The entry of `choices` (structs with a `name`) that the text names.
    template <typename Choices>
    const typename Choices::value_type &choice(const char *key, const Choices &choices,
                                               const char *fallback = nullptr)
    {
        QStringList names;
        for (const auto &candidate : choices)
            names << QLatin1String(candidate.name);
        return choices[static_cast<std::size_t>(choiceIndex(key, names, fallback))];
    }

    // Refuses the value of `key` for a reason that lies outside of it.
    void refuse(const char *key, const QString &expected);

    // Keys that are known but not read: whatever stands there is refused, or let be.
    void refuseIfPresent(std::initializer_list<const char *> keys, const QString &expected);
    void skip(std::initializer_list<const char *> keys);

    // The path of a key's value, or of an element of its array.
    QString path(const QString &key) const;
    QString path(const char *key, int element) const;

    // To be called last: refuses a key that nobody asked for, else the first key that was missing.
    void finish();

private:
    QJsonValue take(const char *key, const QString &expected, bool isRequired);
    int choiceIndex(const char *key, const QStringList &names, const char *fallback);
    bool isAllowed(const QJsonValue &value, const TextRule &rule) const;

    QJsonObject m_object;
    QString m_path;
    FaultSlot &m_faults;
    QStringList m_known;
    QString m_missing; // path of the first required key that is not there
    QString m_missingExpected;
};

} // namespace panelkit::simulator
