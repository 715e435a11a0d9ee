#pragma once

#include <windows.h>

namespace suite {

/// One class of the library, with the program id under which the tests register it.
struct SuiteClass {
  const char* Component;
  const char* ProgramId;
  CLSID Id;
};

inline constexpr SuiteClass Classes[] = {
    {"ChannelIO",
     "VexChannelIO.ChannelIO",
     {0x7d3a5b20, 0x1c4e, 0x4f6a, {0x8e, 0x21, 0x3b, 0x5c, 0x7d, 0x9e, 0xaf, 0x01}}},
    {"SequenceEngine",
     "VEXSEQUENCELib.Sequence",
     {0x7d3a5b20, 0x1c4e, 0x4f6a, {0x8e, 0x21, 0x3b, 0x5c, 0x7d, 0x9e, 0xaf, 0x02}}},
    {"ShellCommandManager",
     "VEXSHELLCMDMGRLib.ShellCmdManager",
     {0x7d3a5b20, 0x1c4e, 0x4f6a, {0x8e, 0x21, 0x3b, 0x5c, 0x7d, 0x9e, 0xaf, 0x03}}},
};

}  // namespace suite
