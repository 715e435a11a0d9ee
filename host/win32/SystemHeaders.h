#pragma once

/// The machine's headers, for this family alone and always by way of this file: they turn names that the
/// system uses for the same things (WM_COPYDATA) into macros, so the system's own come first.
#include "host/Registry.h"
#include "host/Windows.h"

#define WIN32_LEAN_AND_MEAN
#include <winsock2.h>
#include <ws2tcpip.h>
//
#include <windows.h>
