// The events by which the library asks the runtime for work. Each is made with new, posted once through
// UHmiEvent::hmiEventPost with a null receiver, and belongs to the event library from then on.
#pragma once

#include "platform/export.h"

#include <QEvent>
#include <QString>

class InterfaceAll;

// The base of all of them: QEvent and one word that is the runtime's.
class PANELKIT_EXPORT UEventBase : public QEvent
{
public:
    explicit UEventBase(int type);
    virtual ~UEventBase();

    quint32 reserved; // never written here after construction; 0
};

// Asks for a message box. Event type 1007.
class PANELKIT_EXPORT UMessageBoxEvent : public UEventBase
{
public:
    UMessageBoxEvent(const QString &text, int param1, int param2);
    virtual ~UMessageBoxEvent();

    QString text;
    qint32 param1; // what the two numbers select in the box is the runtime's
    qint32 param2;
};

// Asks for a call of one of the runtime's functions. Event type 1010; `flag` starts true.
class PANELKIT_EXPORT UExternalFuncCallEvent : public UEventBase
{
public:
    UExternalFuncCallEvent(const QString &funcName, InterfaceAll *arg);
    virtual ~UExternalFuncCallEvent();

    bool flag;
    QString funcName;  // "runLua" runs a macro
    InterfaceAll *arg; // not owned: it must live until the event has been handled
};
