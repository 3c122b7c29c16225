// SPDX-License-Identifier: Apache-2.0
// The whole library.
#pragma once

#include "scriptwells/session.h"
#include "scriptwells/version.h"
