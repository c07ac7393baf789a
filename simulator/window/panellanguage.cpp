#include "simulator/window/panellanguage.h"

#include <QCoreApplication>
#include <QDir>

namespace panelkit::simulator {

namespace {

const char *const english = "en";
const char *const chinese = "zh_CN";

// Beside the program, as it is built and as it is installed.
QString folder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/" PANELKIT_TRANSLATIONS));
}

} // namespace

PanelLanguage::PanelLanguage(QObject *parent) : QObject(parent), m_current(QLatin1String(english)) {}

PanelLanguage::~PanelLanguage()
{
    remove();
}

QStringList PanelLanguage::known()
{
    return {QLatin1String(english), QLatin1String(chinese)};
}

QString PanelLanguage::ownName(const QString &language)
{
    return language == QLatin1String(chinese) ? QStringLiteral("中文") : QStringLiteral("English");
}

QString PanelLanguage::next() const
{
    const QStringList languages = known();
    return languages.at((static_cast<int>(languages.indexOf(m_current)) + 1) %
                        static_cast<int>(languages.size()));
}

bool PanelLanguage::change(const QString &language, QString &error)
{
    if (!known().contains(language)) {
        error = QStringLiteral("there is no language '%1': there are %2")
                    .arg(language, known().join(QLatin1String(", ")));
        return false;
    }
    if (language == m_current)
        return true;
    remove();
    if (language != QLatin1String(english)) {
        const QString libraryFile = QLatin1String("panelkit_") + language;
        const QString windowFile = QLatin1String("panelsim_") + language;
        if (!m_library.load(libraryFile, folder()) || !m_window.load(windowFile, folder())) {
            error = QStringLiteral("the texts of language '%1' are missing: %2 should hold %3.qm and %4.qm")
                        .arg(language, folder(), libraryFile, windowFile);
            return false;
        }
        QCoreApplication::installTranslator(&m_library);
        QCoreApplication::installTranslator(&m_window);
    }
    m_current = language;
    return true;
}

void PanelLanguage::remove()
{
    QCoreApplication::removeTranslator(&m_library);
    QCoreApplication::removeTranslator(&m_window);
    m_current = QLatin1String(english);
}

} // namespace panelkit::simulator
