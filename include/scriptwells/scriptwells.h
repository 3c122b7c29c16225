// The whole library.
#pragma once

#include "scriptwells/arguments.h"
#include "scriptwells/error.h"
#include "scriptwells/exchange.h"
#include "scriptwells/options.h"
#include "scriptwells/session.h"
#include "scriptwells/table.h"
#include "scriptwells/types.h"
#include "scriptwells/value.h"
