// The small project that the tests of this folder read, and change where they want a fault.
#pragma once

#include "simulator/project/projectfile.h"

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

namespace panelkit::testing {

inline QString dataPath(const char *name)
{
    return QStringLiteral(PANELKIT_TEST_DATA "/") + QLatin1String(name);
}

inline QByteArray contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

inline QByteArray validProject()
{
    return contents(dataPath("valid.json"));
}

inline simulator::Project readValid()
{
    simulator::ProjectError error;
    const std::optional<simulator::Project> project = simulator::readProject(validProject(), error);
    EXPECT_TRUE(project) << error.text().toStdString();
    return project.value_or(simulator::Project());
}

} // namespace panelkit::testing
