// Texts for the object library, which takes NUL-terminated UTF-8.
#pragma once

#include <QByteArray>

class QString;

namespace panelkit {

// The UTF-8 form of a text, without an allocation for texts as short as names are. A character that UTF-8
// cannot hold (half of a surrogate pair) becomes what QString::toUtf8 makes of it.
class Utf8Text
{
public:
    explicit Utf8Text(const QString &text);
    Utf8Text(const Utf8Text &) = delete;
    Utf8Text &operator=(const Utf8Text &) = delete;

    const char *constData() const { return m_text; }

private:
    char m_short[96];
    QByteArray m_long;
    const char *m_text;
};

} // namespace panelkit
