// A road on a session of its own, with the PLC of a soak.
#pragma once

#include "simulator/host/session.h"
#include "simulator/sample/sample.h"
#include "simulator/soak/chance.h"
#include "simulator/soak/inifile.h"
#include "simulator/soak/road.h"
#include "simulator/soak/soakdrivers.h"
#include "simulator/soak/soakplc.h"
#include "simulator/soak/soakproject.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace panelkit::testing {

class RoadFixture : public ::testing::Test
{
protected:
    RoadFixture() : project(sampleForSoak()), plc(project.stations), drivers(project.refusingLinks)
    {
        QString error;
        const QString file = root.filePath(QStringLiteral("soak.json"));
        simulator::replaceFile(file, project.file);
        EXPECT_TRUE(drivers.load(error)) << error.toStdString();
        for (const int link : drivers.links())
            EXPECT_TRUE(drivers.place(root.path(), link, simulator::SoakDriver::Whole));
        simulator::SessionOptions options;
        options.projectFile = file;
        options.root = root.path();
        options.plc = simulator::PlcAddress{QStringLiteral("127.0.0.1"), plc.port()};
        session = simulator::Session::open(options, error);
        EXPECT_TRUE(session) << error.toStdString();
    }

    static simulator::SoakProject sampleForSoak()
    {
        QString error;
        simulator::Chance chance(1, 0);
        auto made = simulator::makeSoakProject(simulator::sampleProject(), chance, error);
        EXPECT_TRUE(made) << error.toStdString();
        return *made;
    }

    // So many actions, the same every time.
    static void act(simulator::Road &road, int count)
    {
        for (int i = 0; i < count; ++i) {
            simulator::Chance chance(17, static_cast<quint64>(i));
            road.act(chance);
        }
    }

    static std::string firstLoss(const simulator::Road &road)
    {
        return road.losses().isEmpty() ? std::string() : road.losses().first().toStdString();
    }

    QTemporaryDir root;
    const simulator::SoakProject project;
    simulator::SoakPlc plc;
    simulator::SoakDrivers drivers;
    std::unique_ptr<simulator::Session> session;
};

} // namespace panelkit::testing
