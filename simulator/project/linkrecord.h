// One link as the communication interface is given it.
#pragma once

#include "register/interfacecomm.h"

namespace panelkit::simulator {

struct LinkRecord
{
    QString name; // what getLinkValueByName looks for; compared exactly
    LinkValue value;
};

} // namespace panelkit::simulator
