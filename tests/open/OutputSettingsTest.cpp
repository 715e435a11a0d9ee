#include "components/open/OutputSettings.h"

#include <gtest/gtest.h>

#include "host/virtual/VirtualRegistry.h"
#include "settings/LibRegistryVex.h"

namespace vex {
namespace {

struct Settings {
  VirtualRegistry Registry;
  void Long(const std::string& szName, int32_t lValue) {
    Registry.SetLong(ProductKeyPath("Output"), szName, static_cast<uint32_t>(lValue));
  }
  void Text(const std::string& szName, const std::string& szText) {
    Registry.SetText(ProductKeyPath("Output"), szName, szText);
  }
  OutputSettings Read() { return ReadOutputSettings(Registry); }
};

TEST(OutputSettings, Defaults) {
  Settings settings;
  const OutputSettings read = settings.Read();
  EXPECT_EQ(read.Protocol, OutputProtocol::E131);
  EXPECT_EQ(read.Host, "");
  EXPECT_EQ(read.Interface, "");
  EXPECT_EQ(read.FirstUniverse, 1);
  EXPECT_EQ(read.SourceName, "VexMonitor");
  EXPECT_EQ(read.Priority, 100);
  EXPECT_EQ(read.FrameRate, 40);
  EXPECT_EQ(read.MediaOffset, 0);
}

TEST(OutputSettings, ReadsEveryValue) {
  Settings settings;
  settings.Text("Protocol", "artnet");
  settings.Text("Host", "10.0.0.1");
  settings.Text("Interface", "127.0.0.1");
  settings.Long("FirstUniverse", 7);
  settings.Text("SourceName", "Porch");
  settings.Long("Priority", 120);
  settings.Long("FrameRate", 20);
  settings.Long("MediaOffset", -35);
  const OutputSettings read = settings.Read();
  EXPECT_EQ(read.Protocol, OutputProtocol::ArtNet);
  EXPECT_EQ(read.Host, "10.0.0.1");
  EXPECT_EQ(read.Interface, "127.0.0.1");
  EXPECT_EQ(read.FirstUniverse, 7);
  EXPECT_EQ(read.SourceName, "Porch");
  EXPECT_EQ(read.Priority, 120);
  EXPECT_EQ(read.FrameRate, 20);
  EXPECT_EQ(read.MediaOffset, -35);
}

TEST(OutputSettings, ProtocolNamesCompareWithoutCase) {
  Settings settings;
  settings.Text("Protocol", "sACN");
  EXPECT_EQ(settings.Read().Protocol, OutputProtocol::E131);
  settings.Text("Protocol", "none");
  EXPECT_EQ(settings.Read().Protocol, OutputProtocol::None);
  settings.Text("Protocol", "kinet");
  EXPECT_EQ(settings.Read().Protocol, OutputProtocol::Unknown);
}

TEST(OutputSettings, NumbersBeyondTheNetworkBecomeTheNearest) {
  Settings settings;
  settings.Long("FirstUniverse", 0);
  settings.Long("Priority", 201);
  settings.Long("FrameRate", 0);
  EXPECT_EQ(settings.Read().FirstUniverse, 1);
  EXPECT_EQ(settings.Read().Priority, 200);
  EXPECT_EQ(settings.Read().FrameRate, 1);
  settings.Long("FirstUniverse", 70000);
  settings.Long("Priority", -1);
  settings.Long("FrameRate", 1000000);
  EXPECT_EQ(settings.Read().FirstUniverse, 63999 - 255);
  EXPECT_EQ(settings.Read().Priority, 0);
  EXPECT_EQ(settings.Read().FrameRate, 250);
}

TEST(OutputSettings, ArtNetUniversesBeginAtZero) {
  Settings settings;
  settings.Text("Protocol", "artnet");
  settings.Long("FirstUniverse", 0);
  EXPECT_EQ(settings.Read().FirstUniverse, 0);
  settings.Long("FirstUniverse", 40000);
  EXPECT_EQ(settings.Read().FirstUniverse, 32767 - 255);
}

}  // namespace
}  // namespace vex
