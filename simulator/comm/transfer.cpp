#include "simulator/comm/transfer.h"

#include <QCoreApplication>

#include <modbus.h>

#include <system_error>

namespace panelkit::simulator {

namespace {

class TransferText
{
    Q_DECLARE_TR_FUNCTIONS(TransferText)

public:
    static QString of(const TransferResult &result)
    {
        switch (result.status) {
        case TransferStatus::Done:
            return tr("done");
        case TransferStatus::NoSuchLink:
            return tr("there is no such link");
        case TransferStatus::WithoutConnection:
            return tr("the link is without connection");
        case TransferStatus::NoSuchRegister:
            return tr("there is no such register");
        case TransferStatus::ReadOnly:
            return tr("the register cannot be written");
        case TransferStatus::NotSent:
            return tr("the link was busy for the whole time-out");
        case TransferStatus::Away:
            return tr("the PLC is away");
        case TransferStatus::NotConnected:
            return tr("no connection to the PLC: %1")
                .arg(QString::fromStdString(std::generic_category().message(result.detail)));
        case TransferStatus::TimedOut:
            return tr("the PLC did not answer in time");
        case TransferStatus::Closed:
            return tr("the PLC closed the connection");
        case TransferStatus::WrongTransaction:
            return tr("the PLC answered another request");
        case TransferStatus::WrongUnit:
            return tr("another station answered");
        case TransferStatus::Malformed:
            return tr("the PLC's answer does not fit the request");
        case TransferStatus::Refused:
            return exception(result.detail);
        case TransferStatus::Stopped:
            return tr("the link was taken down");
        }
        return {};
    }

private:
    static QString exception(int code)
    {
        if (code <= 0 || code >= MODBUS_EXCEPTION_MAX)
            return tr("the PLC refuses (exception %1)").arg(code);
        return tr("the PLC refuses (exception %1: %2)")
            .arg(QString::number(code), QString::fromLatin1(modbus_strerror(MODBUS_ENOBASE + code)));
    }
};

} // namespace

std::string describe(const TransferResult &result)
{
    return TransferText::of(result).toStdString();
}

} // namespace panelkit::simulator
