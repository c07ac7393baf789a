#include "simulator/host/networkplan.h"

#include "network/panelip.h"
#include "platform/sys_base.h"
#include "register/interfacecomm.h"
#include "runtime/systemroot.h"
#include "simulator/comm/systemregisters.h"
#include "simulator/host/operatormessages.h"
#include "simulator/host/panelfiles.h"
#include "simulator/platform/systembase.h"

#include <memory>

namespace panelkit::simulator {

namespace {

constexpr int partCount = 4;

// Nothing can ever stand below a device.
const char *const rootWithoutFiles = "/dev/null";

void addRegisterStep(QList<PlanStep> &steps, int area, int address, quint16 word)
{
    const QString value = QString::number(word);
    // The parts of one address make one step.
    if (area == wordArea && (address - panelAddressRegister) % partCount != 0) {
        steps.last().text += QLatin1Char(' ') + value;
        return;
    }
    const QString place = area == wordArea ? QStringLiteral("%1-%2").arg(address).arg(address + partCount - 1)
                                           : QString::number(address);
    steps << PlanStep{area == wordArea ? QStringLiteral("register") : QStringLiteral("flag"),
                      place + QLatin1String(" = ") + value};
}

// System registers whose writes become steps; of everything else there is nothing.
class Rehearsal final : public InterfaceComm
{
public:
    explicit Rehearsal(QList<PlanStep> &steps) : m_steps(steps) {}

    LinkValue getLinkValue(quint16) override { return {}; }
    LinkValue getLinkValueByName(const QString &) override { return {}; }
    int resolveAddressIndex(int, const QString &, const QString &, int, int) override { return -1; }
    int readAddressWords(const RegisterValueChange *, int, void *) override { return -1; }

    int writeRegisters(int area, int address, int count, const void *buffer) override
    {
        const auto *words = static_cast<const quint16 *>(buffer);
        for (int i = 0; i < count; ++i)
            addRegisterStep(m_steps, area, address + i, words[i]);
        return m_registers->write(area, address, count, buffer) ? 0 : -1;
    }

    int readRegisters(int area, int address, int count, void *buffer) override
    {
        return m_registers->read(area, address, count, buffer) ? 0 : -1;
    }

private:
    QList<PlanStep> &m_steps;
    std::unique_ptr<SystemRegisters> m_registers = std::make_unique<SystemRegisters>();
};

// What a call of the system library does to the panel; those that only read do nothing.
void addSystemStep(QList<PlanStep> &steps, const QString &line)
{
    const QString setting = QStringLiteral("setting");
    const struct
    {
        const char *operation;
        QString place;
        QString text;
    } effects[] = {
        {"sys_base_do_system ", QStringLiteral("command"), QString()},
        {"sys_base_set_config_Ip ", setting, QStringLiteral("IP address = ")},
        {"sys_base_set_config_NetMask ", setting, QStringLiteral("subnet mask = ")},
        {"sys_base_set_config_Gateway ", setting, QStringLiteral("gateway = ")},
        {"sys_base_set_config_DNS ", setting, QStringLiteral("DNS server = ")},
        {"sys_base_init_config", setting, QStringLiteral("the system configuration is read anew")},
    };
    for (const auto &effect : effects) {
        const QLatin1String operation(effect.operation);
        if (line.startsWith(operation))
            steps << PlanStep{effect.place,
                              effect.text + line.mid(static_cast<int>(operation.size())).trimmed()};
    }
}

} // namespace

NetworkPlan planNetwork(const QString &root, const NetworkSettings &wanted)
{
    NetworkPlan plan;
    Rehearsal comm(plan.steps);
    sys_base_app_pro record = {};
    record.comm = &comm;

    setApplicationRecord(&record);
    setCommandPolicy(CommandPolicy::Record);
    setConfigurationFile(QString());
    setSystemBaseObserver(
        [&](const QByteArray &line) { addSystemStep(plan.steps, QString::fromUtf8(line)); });
    tools_setSystemRoot(root.isEmpty() ? QLatin1String(rootWithoutFiles) : root);

    enterNetworkSettings(comm, wanted);
    plan.isAccepted = saveHMIIP();
    for (const QString &message : takeOperatorMessages())
        plan.steps << PlanStep{QStringLiteral("message"), message};
    if (plan.isAccepted)
        plan.warnings = networkWarnings(wanted);

    tools_setSystemRoot(QString());
    setSystemBaseObserver({});
    setApplicationRecord(nullptr);
    clearRecordedCommands();
    return plan;
}

} // namespace panelkit::simulator
