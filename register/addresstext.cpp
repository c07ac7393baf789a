#include "register/addresstext.h"
