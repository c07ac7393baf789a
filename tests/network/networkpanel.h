// A panel around the network functions: a file tree, registers, the system configuration, and one journal of
// everything that is asked of them, in order.
#pragma once

#include "macro/events.h"
#include "simulator/platform/eventlibrary.h"
#include "simulator/platform/systembase.h"
#include "tests/support/panelfixture.h"
#include "tests/support/panelroot.h"

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <memory>
#include <variant>

namespace panelkit::testing {

class NetworkPanel : public PanelFixture
{
protected:
    NetworkPanel()
    {
        simulator::setSystemBaseObserver(
            [this](const QByteArray &line) { journal() << QString::fromUtf8(line); });
        simulator::setEventLibraryListener([this] { notePosting(); });
    }
    ~NetworkPanel() override { simulator::setEventLibraryListener({}); }

    // The register operations as RecordingComm writes them, the calls of the system library as the observer
    // is told them, and what is posted: 'post 1007 "Success." 30 2'.
    QStringList &journal() { return comm.calls; }

    QStringList journalOf(const std::function<void()> &work)
    {
        journal().clear();
        work();
        return journal();
    }

    void setFlag(int address, quint16 value) { comm.systemRegisters.insert({1, address}, value); }
    quint16 flag(int address) const { return comm.systemRegisters.value({1, address}); }
    quint16 word(int address) const { return comm.systemRegisters.value({0, address}); }

    // Sets the words from `address` on.
    void setWords(int address, std::initializer_list<quint16> values)
    {
        for (quint16 value : values)
            comm.systemRegisters.insert({0, address++}, value);
    }

    PanelRoot root;

private:
    void notePosting()
    {
        const auto entry = simulator::takeEventLibraryEntry();
        const auto *posted = entry ? std::get_if<simulator::PostedEvent>(&*entry) : nullptr;
        const auto *box = posted ? dynamic_cast<const UMessageBoxEvent *>(posted->event.get()) : nullptr;
        if (box == nullptr) {
            journal() << QStringLiteral("post something else");
            return;
        }
        journal() << QStringLiteral("post %1 \"%2\" %3 %4")
                             .arg(box->type())
                             .arg(box->text)
                             .arg(box->param1)
                             .arg(box->param2) +
                         QLatin1String(posted->hadReceiver ? " to an object" : "");
    }
};

} // namespace panelkit::testing
