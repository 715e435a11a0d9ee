#!/usr/bin/env python3
"""Holds the Windows programs of a folder to standing alone on every Windows since 7: they may ask for no library
but those that each of these brings (the socket library is none of them: it is loaded when a network is wanted),
and for no function that came later. What is later must be looked up while the program runs, and done without.

    imports.py ARCHITECTURE FOLDER
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from pe import Program  # noqa: E402

MACHINE = {"advapi32", "kernel32", "msvcrt", "ole32", "oleaut32", "shell32", "user32", "winmm", "gdi32"}
WINDOWS7 = (6, 1)
# Public functions of these libraries by the system that brought them, as its documentation tells.
LATER = {
    "Windows 8": """GetSystemTimePreciseAsFileTime WaitOnAddress WakeByAddressSingle WakeByAddressAll CreateFile2
        CopyFile2 LoadPackagedLibrary GetProcessMitigationPolicy SetProcessMitigationPolicy PrefetchVirtualMemory
        GetPackageFullName GetPackageFamilyName GetPackageId GetPackageInfo GetPackagePath OpenPackageInfoByFullName
        GetCurrentPackageFullName GetCurrentPackageFamilyName GetCurrentPackageId GetCurrentPackageInfo
        GetCurrentPackagePath ClosePackageInfo AddDllDirectory RemoveDllDirectory SetDefaultDllDirectories
        GetFirmwareType GetAppContainerNamedObjectPath GetMemoryErrorHandlingCapabilities GetThreadInformation
        RegisterBadMemoryNotification UnregisterBadMemoryNotification SetThreadInformation GetProcessInformation
        SetProcessInformation IsNativeVhdBoot UnmapViewOfFileEx GetOverlappedResultEx IsValidNLSVersion
        GetFirmwareEnvironmentVariableExA GetFirmwareEnvironmentVariableExW SetFirmwareEnvironmentVariableExA
        SetFirmwareEnvironmentVariableExW GetPointerType GetPointerInfo GetPointerTouchInfo EnableMouseInPointer
        RegisterPointerInputTarget InjectTouchInput InitializeTouchInjection SkipPointerFrameMessages
        SetWindowFeedbackSetting GetWindowFeedbackSetting SetDisplayAutoRotationPreferences
        GetDisplayAutoRotationPreferences GetCurrentInputMessageSource RegisterTouchHitTestingWindow
        CoRegisterActivationFilter CoDecodeProxy""",
    "Windows 8.1": """LogicalToPhysicalPointForPerMonitorDPI PhysicalToLogicalPointForPerMonitorDPI
        DiscardVirtualMemory OfferVirtualMemory ReclaimVirtualMemory PssCaptureSnapshot PssFreeSnapshot
        PssQuerySnapshot PssWalkSnapshot PssDuplicateSnapshot""",
    "Windows 10": """SetThreadDescription GetThreadDescription GetDpiForWindow GetDpiForSystem GetSystemMetricsForDpi
        AdjustWindowRectExForDpi SystemParametersInfoForDpi EnableNonClientDpiScaling SetProcessDpiAwarenessContext
        SetThreadDpiAwarenessContext GetThreadDpiAwarenessContext GetWindowDpiAwarenessContext
        AreDpiAwarenessContextsEqual IsWow64Process2 GetSystemWow64Directory2W IsWow64GuestMachineSupported
        GetMachineTypeAttributes VirtualAlloc2 MapViewOfFile3 MapViewOfFile2 UnmapViewOfFile2 CreateFileMapping2
        VirtualAllocFromApp VirtualProtectFromApp CreatePseudoConsole ResizePseudoConsole ClosePseudoConsole
        QueryInterruptTimePrecise QueryUnbiasedInterruptTimePrecise QueryInterruptTime QueryAuxiliaryCounterFrequency
        ConvertAuxiliaryCounterToPerformanceCounter GetTempPath2A GetTempPath2W SetProcessDefaultCpuSets
        SetThreadSelectedCpuSets GetSystemCpuSetInformation SetProcessDynamicEHContinuationTargets CreateEnclave
        CreateSyntheticPointerDevice InjectSyntheticPointerInput EncodeRemotePointer""",
}
LATER = {function: system for system, names in LATER.items() for function in names.split()}


def faults(path, architecture):
    program = Program(path)
    if program.machine != architecture:
        yield f"is for {program.machine}"
    if program.oldest_system > WINDOWS7:
        yield "wants Windows {}.{} or later".format(*program.oldest_system)
    functions = program.imports()
    if "CloseHandle" not in functions.get("kernel32.dll", ()):
        yield "asks for nothing that can be read here"
    for library, names in functions.items():
        if library.removesuffix(".dll") not in MACHINE:
            yield f"wants {library}"
        for name in sorted(names & LATER.keys()):
            yield f"wants {name} of {library}, which came with {LATER[name]}"


def main(architecture, folder):
    programs = sorted(pathlib.Path(folder).glob("*.exe"))
    found = [f"{program} {fault}" for program in programs for fault in faults(program, architecture)]
    for line in found:
        print(line)
    if not programs:
        print(f"{folder} holds no program")
    return 1 if found or not programs else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
