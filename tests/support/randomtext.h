// Random texts, the same in every run.
#pragma once

#include <QChar>
#include <QString>

#include <random>

namespace panelkit::testing {

class RandomText
{
public:
    explicit RandomText(unsigned seed) : m_generator(seed) {}

    int number(int lowest, int highest)
    {
        return std::uniform_int_distribution<int>(lowest, highest)(m_generator);
    }

    // `length` characters of `alphabet`.
    QString of(const QString &alphabet, int length)
    {
        QString text;
        for (int i = 0; i < length; ++i)
            text += alphabet.at(number(0, static_cast<int>(alphabet.size()) - 1));
        return text;
    }

    // `length` UTF-16 code units of any kind, lone surrogates and NULs included, line feeds excluded.
    QString ofAnything(int length)
    {
        QString text;
        while (text.size() < length) {
            const auto unit = static_cast<char16_t>(number(0, 0xffff));
            if (unit != u'\n')
                text += QChar(unit);
        }
        return text;
    }

private:
    std::mt19937 m_generator;
};

} // namespace panelkit::testing
