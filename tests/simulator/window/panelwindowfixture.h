// The whole screen of a project, and the PLC behind it in the test's hands.
#pragma once

#include "simulator/window/macrobutton.h"
#include "simulator/window/page.h"
#include "simulator/window/panelwindow.h"
#include "simulator/window/valuetile.h"
#include "tests/simulator/stillplc.h"
#include "tests/simulator/window/windowfixture.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTemporaryDir>

#include <optional>

namespace panelkit::testing {

class PanelWindowFixture : protected StillPlc, public WindowFixture
{
protected:
    explicit PanelWindowFixture(const Screen &screen = {480, 272}, const QString &projectFile = QString())
        : WindowFixture(screen, optionsOf(projectFile))
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
    simulator::SessionOptions optionsOf(const QString &projectFile) const
    {
        simulator::SessionOptions options = sessionOptions(projectFile);
        options.announceMessageBoxClose = true;
        return options;
    }

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
