#include "register/numformat.h"
