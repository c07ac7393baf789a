// A panel with two PLC links, 3 on a serial port and 12 on Ethernet, and an empty file of link settings.
#pragma once

#include "network/dynamiclink.h"
#include "tests/network/networkpanel.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

namespace panelkit::testing {

class LinkPanel : public NetworkPanel
{
protected:
    LinkPanel() : settings(folder.filePath(QStringLiteral("links.ini")), QSettings::IniFormat)
    {
        LinkValue serial;
        serial.id = 3;
        serial.portName = QStringLiteral("COM1");
        serial.driverLib = QStringLiteral("libmodbus_rtu.so");
        serial.station = 41;
        serial.interval = 42;
        serial.timeout = 43;
        serial.retry = 44;
        serial.addmore = 45;
        serial.addrInterval = 46;
        serial.ip1 = serial.ip2 = serial.ip3 = serial.ip4 = serial.port = 7; // of no use to a serial link
        serial.baud = 38400;
        serial.dataBits = 8;
        serial.check = 1;
        serial.stopBits = 2;
        comm.links.insert(3, serial);

        LinkValue ethernet;
        ethernet.id = 12;
        ethernet.portName = QStringLiteral("Ethernet 1");
        ethernet.driverLib = QStringLiteral("libmodbus_tcp.so");
        ethernet.station = 31;
        ethernet.interval = 32;
        ethernet.timeout = 33;
        ethernet.retry = 34;
        ethernet.addmore = 35;
        ethernet.addrInterval = 36;
        ethernet.ip1 = 172;
        ethernet.ip2 = 16;
        ethernet.ip3 = 0;
        ethernet.ip4 = 9;
        ethernet.port = 44818;
        ethernet.baud = ethernet.dataBits = ethernet.check = ethernet.stopBits = 2; // of no use to Ethernet
        comm.links.insert(12, ethernet);
    }

    // The operator enters parameters of both kinds for the link and asks for them to be saved: station 5,
    // interval 100, time-out 1000, 3 retries, add-more 1, address interval 16; 192.168.1.77 port 502; mode 1,
    // 115200 baud, 8 data bits, parity 2, 1 stop bit.
    void editLink(quint16 number)
    {
        setFlag(60212, 1);
        setWords(64000, {number, 9999, 5, 100, 1000, 3, 1, 16});
        setWords(64020, {192, 168, 1, 77, 502});
        setWords(64040, {1, 49664, 1, 8, 2, 1});
    }

    // Puts a file in the place of the settings, as an editor does.
    void writeSettings(const QByteArray &content)
    {
        QFile file(settings.fileName());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(content), content.size());
        file.close();
        settings.sync();
    }

    // Link 3 as it is stored: not what the project has, and not what editLink enters.
    static constexpr const char *serialGroup =
        "[link3]\ndriLib=libmodbus_rtu.so\nplcStation=21\ninterval=22\ntimeout=23\nretry=24\naddmore=25\n"
        "addrinterval=26\nmode=7\nbaudlow=9600\ndata=7\ncheck=1\nstop=2\n";

    QTemporaryDir folder;
    QSettings settings;
};

} // namespace panelkit::testing
