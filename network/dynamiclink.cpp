#include "network/dynamiclink.h"

#include "network/freespace.h"
#include "register/interfacecomm.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstddef>
#include <string_view>

namespace {

const int wordArea = 0;
const int flagArea = 1;

const int saveFlag = 60212;
const int linkNumberRegister = 64000;

// One parameter: its first register, its key in the settings file, and its field.
struct Parameter
{
    int address;
    const char *key;
    qint32 dynamecslinkParam_t::*field;
};

const Parameter commonParameters[] = {
    {64002, "plcStation", &dynamecslinkParam_t::station},
    {64003, "interval", &dynamecslinkParam_t::interval},
    {64004, "timeout", &dynamecslinkParam_t::timeout},
    {64005, "retry", &dynamecslinkParam_t::retry},
    {64006, "addmore", &dynamecslinkParam_t::addmore},
    {64007, "addrinterval", &dynamecslinkParam_t::addrInterval},
};

const Parameter ethernetParameters[] = {
    {64020, "ip1", &dynamecslinkParam_t::ip1},   {64021, "ip2", &dynamecslinkParam_t::ip2},
    {64022, "ip3", &dynamecslinkParam_t::ip3},   {64023, "ip4", &dynamecslinkParam_t::ip4},
    {64024, "port", &dynamecslinkParam_t::port},
};

const int baudRegister = 64041; // the one parameter of two words

const Parameter serialParameters[] = {
    {64040, "mode", &dynamecslinkParam_t::mode},     {baudRegister, "baudlow", &dynamecslinkParam_t::baud},
    {64043, "data", &dynamecslinkParam_t::dataBits}, {64044, "check", &dynamecslinkParam_t::check},
    {64045, "stop", &dynamecslinkParam_t::stopBits},
};

bool isEthernet(const LinkValue &link)
{
    return link.portName.contains(QLatin1String("Ethernet"));
}

QString groupName(quint16 linkNumber)
{
    return QLatin1String("link") + QString::number(linkNumber);
}

qint32 normalisedMode(qint32 mode)
{
    return mode == 0 || mode == 1 ? mode : 2;
}

template <std::size_t count>
void readRegisters(InterfaceComm *comm, const Parameter (&parameters)[count], dynamecslinkParam_t &values)
{
    for (const Parameter &parameter : parameters) {
        quint16 words[2] = {0, 0};
        comm->readRegisters(wordArea, parameter.address, parameter.address == baudRegister ? 2 : 1, words);
        values.*parameter.field = static_cast<qint32>(words[0] | static_cast<quint32>(words[1]) << 16);
    }
}

template <std::size_t count>
void writeRegisters(InterfaceComm *comm, const Parameter (&parameters)[count],
                    const dynamecslinkParam_t &values)
{
    for (const Parameter &parameter : parameters) {
        const quint32 value = static_cast<quint32>(values.*parameter.field);
        const quint16 words[2] = {static_cast<quint16>(value), static_cast<quint16>(value >> 16)};
        comm->writeRegisters(wordArea, parameter.address, parameter.address == baudRegister ? 2 : 1, words);
    }
}

template <std::size_t count>
void store(QSettings *settings, const Parameter (&parameters)[count], const dynamecslinkParam_t &values)
{
    for (const Parameter &parameter : parameters)
        settings->setValue(QLatin1String(parameter.key), values.*parameter.field);
}

template <std::size_t count>
void fetch(QSettings *settings, const Parameter (&parameters)[count], dynamecslinkParam_t &values)
{
    for (const Parameter &parameter : parameters)
        values.*parameter.field = settings->value(QLatin1String(parameter.key)).toInt();
}

// What the toolkit writes as it read it, wherever in a name or a text it stands.
constexpr std::string_view keptAsItIs =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./\\\"]";

// How many bytes the file has at most once the toolkit has written its settings anew: what an editor wrote
// may then need quotes, or "\xe4" for one byte.
qint64 rewrittenSize(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray content = file.readAll();
    qint64 size = content.size();
    bool isValue = false;
    for (const char c : content) {
        if (c == '\n' || (c == '=' && !isValue))
            isValue = c == '=';
        else if (keptAsItIs.find(c) == std::string_view::npos)
            size += 3;
    }
    return size;
}

// On a disk that fills up while the settings are written, the toolkit puts the part that it could write in
// the place of the earlier file and reports success. So nothing is set that would not fit besides the earlier
// file: the new one, with the group of one link in it, and the file by which the toolkit locks the settings.
// Where the settings' name is a link, the new file comes to where it leads; the lock stays with the name.
bool hasRoomForGroup(const QSettings *settings, const LinkValue &link)
{
    const qint64 longestNumbers = 256; // all keys and numbers of a link, the names of two groups
    const qint64 longestDriver = 6 * static_cast<qint64>(link.driverLib.size()); // "\x4e2d" for a character
    const qint64 longestLock = 256;                                              // process, program, host
    const QString name = settings->fileName();
    const QString target = QFileInfo(name).canonicalFilePath();
    return panelkit::hasRoomFor(
        {target.isEmpty() ? name : target, rewrittenSize(name) + longestNumbers + longestDriver},
        {name, longestLock});
}

// The project's own parameters of the link.
void takeDefinition(const LinkValue &link, dynamecslinkParam_t &values)
{
    values.station = link.station;
    values.interval = link.interval;
    values.timeout = link.timeout;
    values.retry = link.retry;
    values.addmore = link.addmore;
    values.addrInterval = link.addrInterval;
    if (isEthernet(link)) {
        values.ip1 = link.ip1;
        values.ip2 = link.ip2;
        values.ip3 = link.ip3;
        values.ip4 = link.ip4;
        values.port = link.port;
    } else {
        values.baud = link.baud;
        values.dataBits = link.dataBits;
        values.check = link.check >= 0 && link.check <= 2 ? link.check : 0;
        values.stopBits = link.stopBits;
    }
}

} // namespace

int saveDynamicsLinkParam(QSettings *settings, InterfaceComm *comm, dynamecslinkParam_t *param)
{
    if (settings == nullptr || comm == nullptr)
        return 0;
    quint16 request = 0;
    comm->readRegisters(flagArea, saveFlag, 1, &request);
    if (request != 1)
        return 0;
    const quint16 consumed = 0;
    comm->writeRegisters(flagArea, saveFlag, 1, &consumed);

    quint16 linkNumber = 65535;
    comm->readRegisters(wordArea, linkNumberRegister, 1, &linkNumber);
    const LinkValue link = comm->getLinkValue(linkNumber);
    if (link.id <= 0 || !hasRoomForGroup(settings, link))
        return 0;

    dynamecslinkParam_t values = {};
    values.isEthernet = isEthernet(link) ? 1 : 0;
    values.linkId = link.id;

    readRegisters(comm, commonParameters, values);
    settings->beginGroup(groupName(linkNumber));
    settings->setValue(QLatin1String("driLib"), link.driverLib);
    store(settings, commonParameters, values);
    if (values.isEthernet == 1) {
        readRegisters(comm, ethernetParameters, values);
        store(settings, ethernetParameters, values);
    } else {
        readRegisters(comm, serialParameters, values);
        store(settings, serialParameters, values);
    }
    settings->endGroup();
    settings->sync();

    if (param != nullptr) {
        *param = values;
        param->mode = normalisedMode(values.mode);
    }
    return 1;
}

int loadDynamicsLinkFromFile(QSettings *settings, dynamecslinkParam_t *param, QString const &group,
                             LinkValue const &link)
{
    if (param == nullptr || settings == nullptr || group.isEmpty())
        return 0;
    if (!settings->childGroups().contains(group))
        return 0;

    settings->beginGroup(group);
    const bool sameDriver = settings->value(QLatin1String("driLib")).toString() == link.driverLib;
    if (sameDriver) {
        param->linkId = link.id;
        fetch(settings, commonParameters, *param);
        param->isEthernet = isEthernet(link) ? 1 : 0;
        if (param->isEthernet == 1) {
            fetch(settings, ethernetParameters, *param);
        } else {
            fetch(settings, serialParameters, *param);
            param->mode = normalisedMode(param->mode);
        }
    }
    settings->endGroup();
    return sameDriver ? 1 : 0;
}

int loadDynamicsLinkParam(QSettings *settings, InterfaceComm *comm)
{
    if (settings == nullptr || comm == nullptr)
        return 0;
    quint16 linkNumber = 0;
    comm->readRegisters(wordArea, linkNumberRegister, 1, &linkNumber);
    const LinkValue link = comm->getLinkValue(linkNumber);
    if (link.id <= 0)
        return 0;

    dynamecslinkParam_t values = {};
    if (loadDynamicsLinkFromFile(settings, &values, groupName(linkNumber), link) == 0)
        takeDefinition(link, values);
    writeRegisters(comm, commonParameters, values);
    writeRegisters(comm, ethernetParameters, values);
    writeRegisters(comm, serialParameters, values);
    return 1;
}
