// What differs between the toolkit's generations 4.8, 5 and 6, each difference once.
#pragma once

#include <QByteArray>
#include <QLibrary>
#include <QString>
#include <QTimer>
#include <QVariant>

#if QT_VERSION >= 0x060000
#include <QLoggingCategory>
#endif

#if QT_VERSION >= 0x050000
#include <QJsonDocument>
#else
#include <qjson/parser.h>
#endif

#if QT_VERSION >= 0x050300
#include <QPageSize>
#endif

namespace panelkit {

// A JSON document as a variant. Qt has a parser of its own from 5 on.
inline QVariant variantFromJson(const QByteArray &text, bool &isJson)
{
#if QT_VERSION >= 0x050000
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    isJson = error.error == QJsonParseError::NoError;
    return document.toVariant();
#else
    return QJson::Parser().parse(text, &isJson);
#endif
}

// An object for the library file `path`, which is not loaded. When none ever is, 6.4 sets its log up as late
// as at the end of the process and reads freed memory for it: any category sets it up in time.
inline QLibrary *makeLibrary(const QString &path)
{
#if QT_VERSION >= 0x060000
    const QLoggingCategory category("panelkit");
    Q_UNUSED(category)
#endif
    return new QLibrary(path);
}

// Loads `library` where its unloading takes the file from nobody else. Qt 6 does not count an object that is
// made while another has the file loaded: the first to unload takes it from all, so none is loaded there.
inline void loadIfCounted(QLibrary &library)
{
#if QT_VERSION < 0x060000
    library.load();
#else
    Q_UNUSED(library)
#endif
}

inline void unloadIfCounted(QLibrary &library)
{
#if QT_VERSION < 0x060000
    if (library.isLoaded())
        library.unload();
#else
    Q_UNUSED(library)
#endif
}

// Timers of 4.8 are precise; later ones may fire 5 % early unless they are asked not to.
inline void setPrecise(QTimer &timer)
{
#if QT_VERSION >= 0x050000
    timer.setTimerType(Qt::PreciseTimer);
#else
    Q_UNUSED(timer)
#endif
}

// The page sizes moved from the printer to a class of their own.
template <typename Printer>
void setPageSizeA4(Printer &printer)
{
#if QT_VERSION >= 0x050300
    printer.setPageSize(QPageSize(QPageSize::A4));
#else
    printer.setPageSize(Printer::A4);
#endif
}

} // namespace panelkit
