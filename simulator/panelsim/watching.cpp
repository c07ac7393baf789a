#include "simulator/panelsim/watching.h"

#include "simulator/panelsim/commandline.h"

#include <QCoreApplication>
#include <QTimer>

#include <unistd.h>

namespace panelkit::simulator {

void drawUntilInterrupt(std::chrono::milliseconds interval, bool mayOverdraw,
                        const std::function<void(Drawing)> &draw)
{
    const bool inPlace = mayOverdraw && isatty(STDOUT_FILENO) != 0;
    const auto redraw = [&draw, inPlace] {
        if (inPlace)
            print(QStringLiteral("\x1b[H\x1b[J"));
        draw(inPlace ? Drawing::InPlace : Drawing::Below);
        if (inPlace)
            print(QStringLiteral("\nCtrl-C ends this.\n"));
    };
    if (inPlace) // the other screen, so that the terminal is afterwards as it was
        print(QStringLiteral("\x1b[?1049h\x1b[?25l"));
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, redraw);
    timer.start(interval);
    redraw();
    QCoreApplication::exec();
    if (inPlace)
        print(QStringLiteral("\x1b[?25h\x1b[?1049l"));
}

} // namespace panelkit::simulator
