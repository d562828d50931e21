// The interfaces that the idl compiler makes of kvheaders.idl.
#pragma once

#include <windows.h>

#include <ole2.h>

#include "kvheaders_idl.h"
