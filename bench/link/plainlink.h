// Checks and lookups in the ordinary Qt way, step by step.
#pragma once

#include "link/linkinfo.h"

#include <QMap>
#include <QStringList>

namespace panelkit::bench {

class PlainChecker
{
public:
    explicit PlainChecker(object *root);
    ~PlainChecker();
    PlainChecker(const PlainChecker &) = delete;
    PlainChecker &operator=(const PlainChecker &) = delete;

    int checkAddress(const QString &linkName, QString block, const QString &number, object *target,
                     int addrType, int length, int driverArg);

private:
    int checkInternal(object *target, const QString &block, const QString &number, int addrType, int length);
    int checkExternal(const linkInfo_t &link, object *target, QString block, QString number, int addrType,
                      int length, int driverArg, int station);

    QMap<qint32, linkInfo_t> m_links;
    QStringList m_localBlocks;
    QStringList m_linkNames;
};

int plainAddressIndex(QString linkName, QString regName, QString addrText);

} // namespace panelkit::bench
