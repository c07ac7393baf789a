// The panel around a test: an application record with a recording communication interface, and the stand-ins
// as they are at start.
#pragma once

#include "simulator/platform/eventlibrary.h"
#include "simulator/platform/systembase.h"
#include "tests/support/recordingcomm.h"

#include <gtest/gtest.h>

namespace panelkit::testing {

class PanelFixture : public ::testing::Test
{
protected:
    PanelFixture()
    {
        record.comm = &comm;
        simulator::setApplicationRecord(&record);
        simulator::clearEventLibrary();
        simulator::clearRecordedCommands();
    }

    ~PanelFixture() override
    {
        simulator::setApplicationRecord(nullptr);
        simulator::setConfigurationFile(QString());
        simulator::setSystemBaseObserver({});
        simulator::clearEventLibrary();
        simulator::clearRecordedCommands();
    }

    // The runtime without a communication interface.
    void takeCommunicationAway() { record.comm = nullptr; }

    RecordingComm comm;
    sys_base_app_pro record = {};
};

} // namespace panelkit::testing
