// The whole library.
#pragma once

#include "scriptwells/session.h"
#include "scriptwells/version.h"
