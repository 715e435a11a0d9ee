#include "host/Host.h"

namespace vex {

Facilities& Host::Facilities() {
  static vex::Facilities unknown;
  return unknown;
}

ServiceManager& Host::ServiceManager() {
  static vex::ServiceManager nobody;
  return nobody;
}

std::string Host::CommandLine(int argc, char** argv) const {
  std::string szCommandLine;
  for (int i = 1; i < argc; ++i) {
    if (i > 1) szCommandLine += ' ';
    szCommandLine += argv[i];
  }
  return szCommandLine;
}

std::vector<std::string> Host::Arguments(int argc, char** argv) const {
  return {argv, argv + argc};
}

}  // namespace vex
