#include "programs/vexctl/Command.h"

#include "host/CodePage.h"

namespace vex {

std::string SystemText(const std::string& szArgument, const std::string& szWhat) {
  std::string szText;
  if (Utf8ToAnsi(szArgument, szText)) return szText;
  throw CommandFailure(ExitUsage, szWhat + " \"" + szArgument + "\" holds a character outside " +
                                      CodePageName() + "; rename it without that character");
}

}  // namespace vex
