// The binding runtime: wrapper objects and their types, ownership, conversions, enumerations and modules.
#ifndef SHIBOKEN_H
#define SHIBOKEN_H

#include "autodecref.h"
#include "basewrapper.h"
#include "bindingmanager.h"
#include "gilstate.h"
#include "helper.h"
#include "sbkconverter.h"
#include "sbkenum.h"
#include "sbkmodule.h"
#include "sbkpython.h"
#include "sbkstring.h"
#include "shibokenmacros.h"
#include "threadstatesaver.h"

#endif
