// Everything that libpanelkit gives to its callers.
#pragma once

#include "macro/events.h"
#include "macro/interfaceall.h"
#include "register/addresstext.h"
#include "register/interfacecomm.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "runtime/systemroot.h"
