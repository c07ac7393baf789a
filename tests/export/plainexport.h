// The export of a table in the ordinary way of the toolkit, against which ours is held.
#pragma once

#include <QFile>
#include <QList>
#include <QStringList>
#include <QTextCodec>

#if QT_VERSION < 0x060000
#include <QTextStream>
#endif

namespace panelkit::testing {

// Writes text to a file through a text stream with a codec. The text stream of Qt 6 knows no codecs; what it
// did with one, a block of text at a time through one encoder, is done here.
class PlainTextFile
{
public:
    PlainTextFile(const QString &path, QIODevice::OpenMode mode, const char *codecName)
        : m_file(path),
#if QT_VERSION < 0x060000
          m_stream(&m_file)
#else
          m_encoder(QTextCodec::codecForName(codecName), QTextCodec::IgnoreHeader)
#endif
    {
        m_isOpen = m_file.open(QIODevice::WriteOnly | QIODevice::Text | mode);
#if QT_VERSION < 0x060000
        m_stream.setCodec(codecName);
#endif
    }

    ~PlainTextFile()
    {
#if QT_VERSION >= 0x060000
        m_file.write(m_encoder.fromUnicode(m_block));
#endif
    }

    PlainTextFile &operator<<(const QString &text)
    {
#if QT_VERSION < 0x060000
        m_stream << text;
#else
        m_block += text;
        if (m_block.size() > 16384) {
            m_file.write(m_encoder.fromUnicode(m_block));
            m_block.resize(0);
        }
#endif
        return *this;
    }

    PlainTextFile &operator<<(const char *latin1)
    {
#if QT_VERSION < 0x060000
        m_stream << latin1;
        return *this;
#else
        return *this << QString::fromLatin1(latin1);
#endif
    }

    bool isOpen() const
    {
        return m_isOpen;
    }

private:
    QFile m_file;
#if QT_VERSION < 0x060000
    QTextStream m_stream;
#else
    QTextEncoder m_encoder;
    QString m_block;
#endif
    bool m_isOpen = false;
};

inline void plainExportToCsv(const QStringList &header, const QList<QStringList> &rows, const QString &path)
{
    PlainTextFile file(path, QIODevice::Truncate, "GBK");
    if (!file.isOpen())
        return;
    for (const QString &entry : header)
        file << entry << "\n";
    for (const QStringList &cells : rows) {
        for (int i = 0; i < cells.size(); ++i) {
            if (i > 0)
                file << ",";
            file << cells.at(i);
        }
        file << "\n";
    }
}

} // namespace panelkit::testing
