// What a command needs of the toolkit.
#pragma once

#include <QCoreApplication>

#include <memory>

namespace panelkit::simulator {

enum class Application
{
    Console,
    Drawing, // text drawn into files, which takes fonts but no screen
    Hidden,  // windows that nobody sees
    Window   // on this machine's display; without one, or for a picture, on none
};

std::unique_ptr<QCoreApplication> makeApplication(Application kind, int &argc, char **argv);

// Whether windows can be seen: there is a display, or the user has named a platform.
bool hasDisplay();

} // namespace panelkit::simulator
