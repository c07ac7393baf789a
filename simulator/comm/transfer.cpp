#include "simulator/comm/transfer.h"

#include <QCoreApplication>

#include <cerrno>

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
            return tr("no connection to the PLC: %1").arg(reason(result.detail));
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
    struct Sentence
    {
        int number;
        const char *text;
    };

    template <std::size_t Count>
    static QString textOf(const Sentence (&sentences)[Count], int number)
    {
        for (const Sentence &sentence : sentences)
            if (sentence.number == number)
                return tr(sentence.text);
        return {};
    }

    // The system has texts for all numbers, but in its own language and not in the screen's.
    static QString reason(int number)
    {
        static const Sentence sentences[] = {
            {ECONNREFUSED, QT_TR_NOOP("Connection refused")},
            {ETIMEDOUT, QT_TR_NOOP("Connection timed out")},
            {ECONNRESET, QT_TR_NOOP("Connection reset by peer")},
            {ECONNABORTED, QT_TR_NOOP("Connection aborted")},
            {EPIPE, QT_TR_NOOP("Connection broken")},
            {ENOTCONN, QT_TR_NOOP("Not connected")},
            {EHOSTUNREACH, QT_TR_NOOP("No route to host")},
            {EHOSTDOWN, QT_TR_NOOP("Host is down")},
            {ENETUNREACH, QT_TR_NOOP("Network is unreachable")},
            {ENETDOWN, QT_TR_NOOP("Network is down")},
            {EDESTADDRREQ, QT_TR_NOOP("Not the address of a PLC")},
            {EINVAL, QT_TR_NOOP("Not the address of a PLC")},
            {EADDRNOTAVAIL, QT_TR_NOOP("Address not available")},
            {EAFNOSUPPORT, QT_TR_NOOP("Kind of address not supported")},
            {EACCES, QT_TR_NOOP("Permission denied")},
            {EPERM, QT_TR_NOOP("Permission denied")},
            {EMFILE, QT_TR_NOOP("Too many open connections")},
            {ENFILE, QT_TR_NOOP("Too many open connections")},
            {ENOMEM, QT_TR_NOOP("Out of memory")},
            {ENOBUFS, QT_TR_NOOP("Out of memory")},
        };
        const QString text = textOf(sentences, number);
        return text.isEmpty() ? tr("error %1").arg(number) : text;
    }

    static QString exception(int code)
    {
        static const Sentence sentences[] = {
            {1, QT_TR_NOOP("Illegal function")},
            {2, QT_TR_NOOP("Illegal data address")},
            {3, QT_TR_NOOP("Illegal data value")},
            {4, QT_TR_NOOP("Device failure")},
            {5, QT_TR_NOOP("Accepted, but takes long")},
            {6, QT_TR_NOOP("Device busy")},
            {7, QT_TR_NOOP("Not possible")},
            {8, QT_TR_NOOP("Memory parity error")},
            {10, QT_TR_NOOP("Gateway has no path")},
            {11, QT_TR_NOOP("No answer behind the gateway")},
        }; // 9 means nothing
        const QString text = textOf(sentences, code);
        if (text.isEmpty())
            return tr("the PLC refuses (exception %1)").arg(code);
        return tr("the PLC refuses (exception %1: %2)").arg(QString::number(code), text);
    }
};

} // namespace

std::string describe(const TransferResult &result)
{
    return TransferText::of(result).toStdString();
}

} // namespace panelkit::simulator
