// The ODBC headers as the driver needs them: its entry points are what the shared library exports, nothing else is.
#pragma once

#pragma GCC visibility push(default)
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>
#pragma GCC visibility pop

static_assert(sizeof(SQLWCHAR) == 2, "wide text is UTF-16");
static_assert(sizeof(SQLLEN) == sizeof(void *), "lengths are as wide as pointers");
static_assert(sizeof(SQLINTEGER) == 4, "SQLINTEGER has 32 bits");
