// The argument object of a call that the runtime is asked to make.
#pragma once

#include "platform/export.h"

#include <QList>
#include <QString>
#include <QStringList>

// What a posted UExternalFuncCallEvent carries to the runtime, which overrides the operations in subclasses
// of its own. The order of the virtual operations and of the fields is an interface. The object owns its
// texts and the list `args`, never what the list points to. A new object has the values that a macro's
// argument starts with.
class PANELKIT_EXPORT InterfaceAll
{
public:
    InterfaceAll();
    virtual ~InterfaceAll();

    // Hooks of the runtime; here they do nothing.
    virtual void keyboardReflash(const QString &text);
    virtual void execComplete(const int &code, const QString &text);

    virtual quint16 getOptLogType(); // `optLogType`
    virtual void setOptLogType(unsigned short type);

    // Hooks of the runtime; here they do nothing.
    virtual void exportData();
    virtual void insertOperatorLog(QString entry);
    virtual void insertOperatorLog(const QStringList &entries);

    QList<void *> args; // for a macro: one entry, the address of its script text (a QString)
    qint32 reserved0;
    QString idText;    // "65535"
    QString valueText; // "0"
    bool flagA, flagB;
    qint32 intA, intB;
    QString note;
    bool flagC;
    qint32 intC, intD;
    quint16 optLogType; // kind of entry in the operator's log; 0
};
