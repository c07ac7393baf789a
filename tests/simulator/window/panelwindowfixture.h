// The whole screen of a project, and the PLC behind it in the test's hands.
#pragma once

#include "simulator/plc/bottlingline.h"
#include "simulator/plc/plcserver.h"
#include "simulator/window/macrobutton.h"
#include "simulator/window/page.h"
#include "simulator/window/panelwindow.h"
#include "simulator/window/valuetile.h"
#include "tests/simulator/window/windowfixture.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTemporaryDir>

#include <optional>

namespace panelkit::testing {

// A bottling line that stands still unless it is told to move.
struct StillPlc
{
    simulator::PlcMemory memory{simulator::BottlingLine::units(), simulator::BottlingLine::registersPerTable};
    simulator::BottlingLine line{memory};
    simulator::PlcServer server{memory};

    void cutOff() { server.setFault({simulator::PlcFault::Gone}); }
    void silence() { server.setFault({simulator::PlcFault::Silent}); }
    void comeBack() { server.clearFault(); }

    simulator::SessionOptions sessionOptions(const QString &projectFile = QString()) const
    {
        simulator::SessionOptions options;
        options.projectFile = projectFile;
        options.plc = simulator::PlcAddress{QStringLiteral("127.0.0.1"), server.port()};
        options.announceMessageBoxClose = true;
        return options;
    }
};

class PanelWindowFixture : protected StillPlc, public WindowFixture
{
protected:
    explicit PanelWindowFixture(const Screen &screen = {480, 272}, const QString &projectFile = QString())
        : WindowFixture(screen, sessionOptions(projectFile))
    {
    }

    void SetUp() override
    {
        WindowFixture::SetUp();
        if (!session)
            return;
        window.emplace(*session);
        show(*window);
    }

    void turnTo(const char *page)
    {
        ASSERT_TRUE(window->showPage(QLatin1String(page))) << page;
        QCoreApplication::processEvents();
    }

    simulator::ValueTile *tile(const char *item) const
    {
        for (simulator::ValueTile *tile : window->findChildren<simulator::ValueTile *>())
            if (tile->name() == QLatin1String(item))
                return tile;
        ADD_FAILURE() << "there is no display of " << item;
        return nullptr;
    }

    QAbstractButton *button(const QString &text) const
    {
        for (QAbstractButton *button : window->findChildren<QAbstractButton *>())
            if (button->text() == text && button->isVisible())
                return button;
        ADD_FAILURE() << "there is no button \"" << text.toStdString() << "\"";
        return nullptr;
    }

    QString label(const char *name) const
    {
        const auto *found = window->findChild<QLabel *>(QLatin1String(name));
        return found != nullptr ? found->text() : QString();
    }

    void press(QWidget *widget) { touch(widget, QEvent::MouseButtonPress); }
    void lift(QWidget *widget) { touch(widget, QEvent::MouseButtonRelease); }

    quint16 holding(int index) { return memory.value(1, simulator::ModbusTable::HoldingRegisters, index); }

    std::optional<simulator::PanelWindow> window;

private:
    void touch(QWidget *widget, QEvent::Type type)
    {
        const QPoint place = widget->mapTo(widget->window(), widget->rect().center());
        if (type == QEvent::MouseButtonPress)
            QTest::mousePress(widget->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
        else
            QTest::mouseRelease(widget->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    }
};

class PanelWindowOnEveryScreen : public PanelWindowFixture, public ::testing::WithParamInterface<Screen>
{
protected:
    PanelWindowOnEveryScreen() : PanelWindowFixture(GetParam()) {}
};

} // namespace panelkit::testing
