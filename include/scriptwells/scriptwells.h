// The whole library.
#pragma once

#include "scriptwells/session.h"
