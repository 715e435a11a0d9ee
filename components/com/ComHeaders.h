#pragma once

/// The machine's headers for its component model, for this family alone and always by way of this file: they
/// turn names that the system uses for the same things into macros, so the system's own come first.
#include "host/Registry.h"
#include "host/Windows.h"

#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
//
#include <windows.h>
//
#include <ole2.h>
#include <olectl.h>
