// The bytes of a link settings file, behind six of a link's registers: read for a serial and an Ethernet
// link, then the registers are saved into it and read again.

#include "network/dynamiclink.h"

#include "fuzz/support/bytes.h"
#include "fuzz/support/demand.h"
#include "register/interfacecomm.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <map>

namespace {

class Panel final : public InterfaceComm
{
public:
    LinkValue link;
    std::map<int, quint16> words;
    quint16 request = 1;

    LinkValue getLinkValue(quint16) override { return link; }
    LinkValue getLinkValueByName(const QString &) override { return link; }
    int resolveAddressIndex(int, const QString &, const QString &, int, int) override { return 0; }
    int readAddressWords(const RegisterValueChange *, int, void *) override { return 0; }
    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        for (int i = 0; i < count; ++i)
            (area == 1 ? request : words[address + i]) = static_cast<const quint16 *>(buffer)[i];
        return 0;
    }
    int readRegisters(int area, int address, int count, void *buffer) override
    {
        for (int i = 0; i < count; ++i)
            static_cast<quint16 *>(buffer)[i] = area == 1 ? request : words[address + i];
        return 0;
    }
};

bool isSame(const dynamecslinkParam_t &a, const dynamecslinkParam_t &b)
{
    return std::memcmp(&a, &b, sizeof(a)) == 0; // integers of one width, so nothing lies between them
}

void saveAndReadAgain(const QString &path, Panel &panel)
{
    panel.words[64000] = 3;
    panel.request = 1;
    dynamecslinkParam_t saved = {};
    {
        QSettings settings(path, QSettings::IniFormat);
        demand(saveDynamicsLinkParam(&settings, &panel, &saved) == 1, "the registers are saved");
        demand(panel.request == 0, "the request is consumed");
        if (settings.status() == QSettings::AccessError)
            return;
    }
    // As another process would find it.
    const QString moved = path + QLatin1String(".again");
    demand(QFile::copy(path, moved), "the settings are on disk");
    QSettings settings(moved, QSettings::IniFormat);
    dynamecslinkParam_t read = {};
    demand(loadDynamicsLinkFromFile(&settings, &read, QStringLiteral("link3"), panel.link) == 1,
           "what is saved is found");
    demand(isSame(read, saved), "what is saved is read again");
    demand(loadDynamicsLinkParam(&settings, &panel) == 1, "the registers are filled");
    QFile::remove(moved);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static QTemporaryDir folder;
    static int number = 0;
    Bytes input(data, size);
    Panel panel;
    for (int address : {64002, 64003, 64020, 64040, 64041, 64042})
        panel.words[address] = input.number<quint16>();
    // The toolkit keeps what it read of a file by its name and time, so each input gets a name of its own.
    const QString path = folder.filePath(QString::number(++number));
    QFile file(path);
    demand(file.open(QIODevice::WriteOnly) && file.write(input.rest()) >= 0, "the file is written");
    file.close();

    for (const char *port : {"COM1", "Ethernet 1"}) {
        panel.link.id = 3;
        panel.link.portName = QLatin1String(port);
        panel.link.driverLib = QStringLiteral("libmodbus.so");
        QSettings settings(path, QSettings::IniFormat);
        for (const QString &group : settings.childGroups()) {
            dynamecslinkParam_t param;
            std::memset(&param, 0x5A, sizeof(param));
            dynamecslinkParam_t untouched = param;
            const int found = loadDynamicsLinkFromFile(&settings, &param, group, panel.link);
            demand(found == 1 ? param.linkId == 3 : isSame(param, untouched),
                   "the record is filled or untouched");
            demand(settings.group().isEmpty(), "the settings are left where they were");
        }
    }
    saveAndReadAgain(path, panel);
    QFile::remove(path);
    return 0;
}
