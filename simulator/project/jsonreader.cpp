#include "simulator/project/jsonreader.h"

#include <QLocale>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace panelkit::simulator {

namespace {

constexpr int longestQuote = 40; // characters of a text that a message repeats

// Number of single-character changes between two keys, upper and lower case being the same.
int distance(const QString &left, const QString &right)
{
    std::vector<int> row(static_cast<std::size_t>(right.size()) + 1);
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = static_cast<int>(i);
    for (const QChar leftCharacter : left) {
        int diagonal = row[0]++;
        for (std::size_t i = 1; i < row.size(); ++i) {
            const QChar rightCharacter = right[static_cast<int>(i) - 1];
            const int change = leftCharacter.toLower() == rightCharacter.toLower() ? 0 : 1;
            const int best = std::min({row[i] + 1, row[i - 1] + 1, diagonal + change});
            diagonal = row[i];
            row[i] = best;
        }
    }
    return row.back();
}

QString oneOf(const QStringList &texts)
{
    QStringList all;
    for (const QString &text : texts)
        all << quoted(text);
    return (all.size() > 1 ? QLatin1String("one of ") : QLatin1String("")) + all.join(QLatin1String(", "));
}

// The known keys for which `key` may be a slip, nearest first; all of them when there is none.
QString nearestKeys(const QString &key, const QStringList &known)
{
    if (known.isEmpty())
        return QStringLiteral("no key");
    if (key.size() > longestQuote)
        return oneOf(known);
    const int furthest = std::max(2, static_cast<int>(key.size()) / 3);
    QMap<std::pair<int, QString>, QString> near;
    for (const QString &candidate : known)
        if (const int changes = distance(key, candidate); changes <= furthest)
            near.insert({changes, candidate}, candidate);
    return oneOf(near.isEmpty() ? known : QStringList(near.values()));
}

bool isPlainKey(const QString &key)
{
    return !key.isEmpty() && key.size() <= longestQuote &&
           std::all_of(key.begin(), key.end(), [](QChar character) {
               return character.unicode() < 128 &&
                      (character.isLetterOrNumber() || character == QLatin1Char('_'));
           });
}

} // namespace

void FaultSlot::refuse(const QString &where, const QString &found, const QString &expected)
{
    if (!m_fault)
        m_fault = ProjectError{where, found, expected};
}

QString quoted(const QString &text)
{
    QString inner;
    for (const QChar character : text.left(longestQuote)) {
        if (character == QLatin1Char('"') || character == QLatin1Char('\\'))
            inner += QLatin1Char('\\');
        if (character.category() == QChar::Other_Control)
            inner += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
        else
            inner += character;
    }
    if (text.size() > longestQuote)
        inner += QChar(0x2026);
    return QLatin1Char('"') + inner + QLatin1Char('"');
}

QString described(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::String:
        return quoted(value.toString());
    case QJsonValue::Array:
        return QStringLiteral("an array");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

ObjectReader::ObjectReader(const QJsonValue &value, const QString &path, FaultSlot &faults)
    : m_object(value.toObject()),
      m_path(path),
      m_faults(faults)
{
    if (!value.isObject())
        m_faults.refuse(path.isEmpty() ? QStringLiteral("the file") : path, described(value),
                        QStringLiteral("an object"));
}

QString ObjectReader::path(const QString &key) const
{
    if (!isPlainKey(key))
        return m_path + QLatin1Char('[') + quoted(key) + QLatin1Char(']');
    return m_path.isEmpty() ? key : m_path + QLatin1Char('.') + key;
}

QString ObjectReader::path(const char *key, int element) const
{
    return path(QLatin1String(key)) + QStringLiteral("[%1]").arg(element);
}

QJsonValue ObjectReader::take(const char *key, const QString &expected, bool isRequired)
{
    const QString name = QLatin1String(key);
    m_known << name;
    QJsonValue value = m_object.value(name);
    if (value.isUndefined() && isRequired && m_missing.isEmpty()) {
        m_missing = path(name);
        m_missingExpected = expected;
    }
    return value;
}

int ObjectReader::integer(const char *key, int minimum, int maximum, std::optional<int> fallback)
{
    const QString expected = minimum == maximum
                                 ? QString::number(minimum)
                                 : QStringLiteral("a whole number from %1 to %2").arg(minimum).arg(maximum);
    const QJsonValue value = take(key, expected, !fallback);
    if (value.isUndefined())
        return fallback.value_or(0);
    const double number = value.toDouble();
    if (value.isDouble() && number >= minimum && number <= maximum && number == std::floor(number))
        return static_cast<int>(number);
    refuse(key, expected);
    return fallback.value_or(0);
}

bool ObjectReader::boolean(const char *key, bool fallback)
{
    const QString expected = QStringLiteral("true or false");
    const QJsonValue value = take(key, expected, false);
    if (!value.isUndefined() && !value.isBool())
        refuse(key, expected);
    return value.toBool(fallback);
}

bool ObjectReader::isAllowed(const QJsonValue &value, const TextRule &rule) const
{
    const QString text = value.toString();
    if (!value.isString() || text.size() > rule.maximumLength)
        return false;
    if (!rule.isCode && (text.isEmpty() || text.trimmed() != text))
        return false;
    const QString forbidden = QString::fromLatin1(rule.forbidden);
    return std::all_of(text.begin(), text.end(), [&](QChar character) {
        const bool isControl = character.category() == QChar::Other_Control;
        return (!isControl || (rule.isCode && character == QLatin1Char('\t'))) &&
               !forbidden.contains(character) && (!rule.isLatin1 || character.unicode() < 256);
    });
}

QString ObjectReader::text(const char *key, const TextRule &rule)
{
    const QString expected = QString::fromUtf8(rule.description);
    const QJsonValue value = take(key, expected, true);
    if (!value.isUndefined() && !isAllowed(value, rule))
        refuse(key, expected);
    return value.toString();
}

QStringList ObjectReader::texts(const char *key, const TextRule &rule)
{
    QStringList all;
    const QJsonArray elements = array(key);
    for (int i = 0; i < elements.size(); ++i) {
        if (!isAllowed(elements.at(i), rule))
            m_faults.refuse(path(key, i), described(elements.at(i)), QString::fromUtf8(rule.description));
        all << elements.at(i).toString();
    }
    return all;
}

QJsonArray ObjectReader::array(const char *key)
{
    const QString expected = QStringLiteral("an array");
    const QJsonValue value = take(key, expected, false);
    if (!value.isUndefined() && !value.isArray())
        refuse(key, expected);
    return value.toArray();
}

int ObjectReader::choiceIndex(const char *key, const QStringList &names, const char *fallback)
{
    const QString expected = oneOf(names);
    const QJsonValue value = take(key, expected, fallback == nullptr);
    const QString name = value.isUndefined() ? QString::fromLatin1(fallback) : value.toString();
    const int index = static_cast<int>(names.indexOf(name));
    if (index < 0 && !value.isUndefined())
        refuse(key, expected);
    return std::max(index, 0);
}

void ObjectReader::refuse(const char *key, const QString &expected)
{
    const QString name = QLatin1String(key);
    m_faults.refuse(path(name), described(m_object.value(name)), expected);
}

void ObjectReader::refuseIfPresent(std::initializer_list<const char *> keys, const QString &expected)
{
    skip(keys);
    for (const char *key : keys)
        if (m_object.contains(QLatin1String(key)))
            refuse(key, expected);
}

void ObjectReader::skip(std::initializer_list<const char *> keys)
{
    for (const char *key : keys)
        m_known << QLatin1String(key);
}

void ObjectReader::finish()
{
    for (auto entry = m_object.begin(); entry != m_object.end() && m_faults.isEmpty(); ++entry)
        if (!m_known.contains(entry.key()))
            m_faults.refuse(path(entry.key()), QStringLiteral("an unknown key"),
                            nearestKeys(entry.key(), m_known));
    if (!m_missing.isEmpty())
        m_faults.refuse(m_missing, QStringLiteral("nothing"), m_missingExpected);
}

} // namespace panelkit::simulator
