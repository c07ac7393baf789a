// One panel session: what a panel's runtime is around the library, from the files of the product tree to the
// application record. Every command of panelsim works on one.
#pragma once

#include "platform/device_struct.h"
#include "simulator/project/project.h"

#include <QSize>
#include <QString>

#include <memory>
#include <optional>

namespace panelkit::simulator {

class Communication;
class FlagPolling;

struct PlcAddress
{
    QString host;
    quint16 port = 0;
};

// "HOST:PORT", or nothing when the text is not that. An IPv6 host stands in brackets.
std::optional<PlcAddress> parsePlcAddress(const QString &text);

struct SessionOptions
{
    QString projectFile;                  // empty: the sample
    std::optional<PlcAddress> plc;        // nothing: a bottling line is started on a free loopback port
    QString root;                         // the system root, made when missing; empty: a temporary folder
    QSize screen;                         // of the panel, in pixels; empty: the project's
    bool announceMessageBoxClose = false; // has the library tell when a message box is closed unanswered
    bool runCommands = false;             // hands the library's shell commands to this machine's shell
};

// A process has one system root, one application record and one event queue, so it can have one session at a
// time. A session and everything reached through it is for the thread that opened it.
class Session
{
public:
    // Loads the project, lays out the product tree below the system root, starts the PLC if none was named
    // and the links, with the parameters that an operator saved for them, and sets the application record.
    // Nothing, with one line in `error` that names the file or the value and the way out, when something of
    // that cannot be done; nothing is left behind then.
    static std::unique_ptr<Session> open(const SessionOptions &options, QString &error);

    // Ends the links, takes the application record away and removes a temporary system root.
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const Project &project() const;
    object *projectRoot() const;
    object *itemNode(std::size_t index) const; // of project().items[index]
    Communication &communication() const;
    FlagPolling &flags() const;

    // The address of the bottling line that this session started, or of the PLC that was named.
    PlcAddress plcAddress() const;

private:
    Session();
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace panelkit::simulator
