// Everything that libpanelkit gives to its callers.
#pragma once

#include "export/helpcsv.h"
#include "export/helpsqlite.h"
#include "export/tableexport.h"
#include "macro/events.h"
#include "macro/interfaceall.h"
#include "network/dynamiclink.h"
#include "network/panelip.h"
#include "register/addresstext.h"
#include "register/interfacecomm.h"
#include "register/numformat.h"
#include "register/registervaluechange.h"
#include "runtime/systeminfo.h"
#include "register/textencoding.h"
#include "runtime/systemroot.h"
