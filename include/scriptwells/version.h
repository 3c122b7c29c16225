// SPDX-License-Identifier: Apache-2.0
// The version of these headers: the build, the packages and Version() of session.h take it from here.
#pragma once

#define SCRIPTWELLS_VERSION_MAJOR 0
#define SCRIPTWELLS_VERSION_MINOR 1
#define SCRIPTWELLS_VERSION_PATCH 0
#define SCRIPTWELLS_VERSION "0.1.0"
