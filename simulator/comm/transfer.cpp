#include "simulator/comm/transfer.h"

#include <modbus.h>

#include <system_error>

namespace panelkit::simulator {

namespace {

std::string describeException(int code)
{
    std::string text = "the PLC refuses (exception " + std::to_string(code);
    if (code > 0 && code < MODBUS_EXCEPTION_MAX)
        text += std::string(": ") + modbus_strerror(MODBUS_ENOBASE + code);
    return text + ")";
}

} // namespace

std::string describe(const TransferResult &result)
{
    switch (result.status) {
    case TransferStatus::Done:
        return "done";
    case TransferStatus::NoSuchLink:
        return "there is no such link";
    case TransferStatus::WithoutConnection:
        return "the link is without connection";
    case TransferStatus::NoSuchRegister:
        return "there is no such register";
    case TransferStatus::ReadOnly:
        return "the register cannot be written";
    case TransferStatus::NotSent:
        return "the link was busy for the whole time-out";
    case TransferStatus::Away:
        return "the PLC is away";
    case TransferStatus::NotConnected:
        return "no connection to the PLC: " + std::generic_category().message(result.detail);
    case TransferStatus::TimedOut:
        return "the PLC did not answer in time";
    case TransferStatus::Closed:
        return "the PLC closed the connection";
    case TransferStatus::WrongTransaction:
        return "the PLC answered another request";
    case TransferStatus::WrongUnit:
        return "another station answered";
    case TransferStatus::Malformed:
        return "the PLC's answer does not fit the request";
    case TransferStatus::Refused:
        return describeException(result.detail);
    case TransferStatus::Stopped:
        return "the link was taken down";
    }
    return {};
}

} // namespace panelkit::simulator
