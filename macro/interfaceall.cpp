#include "macro/interfaceall.h"

InterfaceAll::InterfaceAll()
    : reserved0(0),
      idText(QLatin1String("65535")),
      valueText(QLatin1String("0")),
      flagA(false),
      flagB(false),
      intA(0),
      intB(0),
      flagC(false),
      intC(0),
      intD(0),
      optLogType(0)
{
}

InterfaceAll::~InterfaceAll() = default;

void InterfaceAll::keyboardReflash(const QString &) {}

void InterfaceAll::execComplete(const int &, const QString &) {}

quint16 InterfaceAll::getOptLogType()
{
    return optLogType;
}

void InterfaceAll::setOptLogType(unsigned short type)
{
    optLogType = type;
}

void InterfaceAll::exportData() {}

void InterfaceAll::insertOperatorLog(QString) {} // NOLINT(performance-unnecessary-value-param): fixed

void InterfaceAll::insertOperatorLog(const QStringList &) {}
