// What differs between the toolkit's generations 4.8, 5 and 6, each difference once.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTimer>
#include <QVariant>

#if QT_VERSION >= 0x050000
#include <QJsonDocument>
#else
#include <qjson/parser.h>
#endif

#if QT_VERSION >= 0x050300
#include <QPageSize>
#endif

#if QT_VERSION >= 0x060000
#include <QFile>

#include <dlfcn.h>
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

// Keeps the library that a QLibrary has loaded from `path` in the process, until releaseLibrary takes what
// this returns. Qt 6 does not count its objects for one file: whichever unloads first would take it from all.
inline void *holdLibrary(const QString &path)
{
#if QT_VERSION >= 0x060000
    return dlopen(QFile::encodeName(path).constData(), RTLD_LAZY | RTLD_NOLOAD);
#else
    (void)path;
    return nullptr;
#endif
}

inline void releaseLibrary(void *held)
{
#if QT_VERSION >= 0x060000
    if (held != nullptr)
        dlclose(held);
#else
    (void)held;
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
