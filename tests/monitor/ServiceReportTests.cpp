#include "monitor/ServiceReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/virtual/VirtualHost.h"
#include "monitor/StatusFile.h"

namespace vex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class WrittenServiceManager : public ServiceManager {
 public:
  [[nodiscard]] Elapsed WatchdogTime() const override { return Wait; }
  void Ready() override { Told.push_back("ready"); }
  void Status(const std::string& szLine) override { Told.push_back(szLine); }
  void Alive() override { ++Signs; }
  void Stopping() override { Told.push_back("stopping"); }

  Elapsed Wait{0};
  std::vector<std::string> Told;
  int32_t Signs = 0;
};

class ServiceReportTest : public testing::Test {
 protected:
  VirtualHost Host;
  WrittenServiceManager Manager;
  PlayerStatus Status;
};

TEST_F(ServiceReportTest, ReadyIsToldOnceAndOnlyAfterTheStart) {
  ServiceReport report(Host.EventLoop(), Manager);
  report.Update(Status);
  EXPECT_THAT(Manager.Told, ElementsAre("Starting"));
  Status.Ready = true;
  report.Update(Status);
  report.Update(Status);
  EXPECT_THAT(Manager.Told, ElementsAre("Starting", "ready", "No show"));
}

TEST_F(ServiceReportTest, TheEndIsToldOnce) {
  ServiceReport report(Host.EventLoop(), Manager);
  Status.Ready = true;
  Status.ShuttingDown = true;
  report.Update(Status);
  report.Update(Status);
  EXPECT_THAT(Manager.Told, ElementsAre("ready", "stopping", "No show, shutting down"));
}

TEST_F(ServiceReportTest, SignsOfLifeComeTwiceInEachWait) {
  Manager.Wait = std::chrono::seconds(10);
  const ServiceReport report(Host.EventLoop(), Manager);
  Host.EventLoop().Advance(4999);
  EXPECT_EQ(Manager.Signs, 0);
  Host.EventLoop().Advance(1);
  EXPECT_EQ(Manager.Signs, 1);
  Host.EventLoop().Advance(20'000);
  EXPECT_EQ(Manager.Signs, 5);
}

TEST_F(ServiceReportTest, NobodyWhoWaitsIsToldNothing) {
  const ServiceReport report(Host.EventLoop(), Manager);
  Host.EventLoop().Advance(3'600'000);
  EXPECT_EQ(Manager.Signs, 0);
  EXPECT_THAT(Manager.Told, IsEmpty());
}

TEST_F(ServiceReportTest, TheLineNamesTheShowOrTheNextOne) {
  Status.Ready = true;
  Status.Next = "(eve.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)";
  EXPECT_EQ(StatusLine(Status), "No show; next eve.shw at 2026-12-24 18:00:00");
  Status.Current = "(,(T,2026-12-23 22:00:00,T,2026-12-24 18:00:00),0,F)";
  EXPECT_EQ(StatusLine(Status), "No show; next eve.shw at 2026-12-24 18:00:00");
  Status.Current = "(f\xFCr.shw,(T,2026-12-24 18:00:00,T,2026-12-24 22:00:00),0,F)";
  EXPECT_EQ(StatusLine(Status), "Playing f\u00FCr.shw until 2026-12-24 22:00:00");
  Status.Current = "(party.shw,(F,,F,),2,F)";
  EXPECT_EQ(StatusLine(Status), "Playing party.shw");
  Status.Current = "damaged(";
  Status.Next = "";
  EXPECT_EQ(StatusLine(Status), "No show");
}

}  // namespace
}  // namespace vex
