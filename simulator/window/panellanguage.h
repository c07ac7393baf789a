// The language of the screen's texts.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTranslator>

namespace panelkit::simulator {

// Installs and removes the translations of the library and of the window, upon which every widget is told.
// At its end the texts are English again.
class PanelLanguage : public QObject
{
    Q_OBJECT
public:
    explicit PanelLanguage(QObject *parent = nullptr);
    ~PanelLanguage() override;

    static QStringList known(); // "en" and "zh_CN"

    // What a language calls itself, as on the button that changes to it.
    static QString ownName(const QString &language);

    QString current() const { return m_current; }
    QString next() const; // the one after the current, the first after the last

    // False, with one line in `error` and the language as it was, for an unknown language, and when the files
    // of a known one are missing.
    bool change(const QString &language, QString &error);

private:
    void remove();

    QTranslator m_library;
    QTranslator m_window;
    QString m_current;
};

} // namespace panelkit::simulator
