#pragma once

#include <vector>

#include "basic/Error.h"
#include "tests/host/HostContract.h"

namespace vex::test {

TEST_P(HostContract, FirstToAskIsTheRunningPlayer) {
  const auto second = m_Machine->NewHost();
  EXPECT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  EXPECT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  EXPECT_TRUE(second->SingleInstance().AlreadyRunning());
}

TEST_P(HostContract, PlaceOfARunningPlayerIsFreeWhenItEnds) {
  const auto second = m_Machine->NewHost();
  EXPECT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  m_Host.reset();
  EXPECT_FALSE(second->SingleInstance().AlreadyRunning());
}

TEST_P(HostContract, AskingInVainDoesNotFreeThePlace) {
  EXPECT_FALSE(m_Host->SingleInstance().AlreadyRunning());
  { EXPECT_TRUE(m_Machine->NewHost()->SingleInstance().AlreadyRunning()); }
  EXPECT_TRUE(m_Machine->NewHost()->SingleInstance().AlreadyRunning());
}

TEST_P(HostContract, StartedProgramHasANumberAndIsWaitedFor) {
  const ProcessId process = m_Host->Processes().Start(m_Machine->ShortProgram(), NormalFocus);
  EXPECT_NE(process, 0);
  m_Host->Processes().WaitFor(process);
}

TEST_P(HostContract, MessageBoxReturns) {
  m_Host->MessageBoxes().Show("text", "");
  m_Host->MessageBoxes().Show("text", "Brillara");
}

TEST_P(HostContract, DottedAddressesResolve) {
  uint32_t address = 0;
  EXPECT_TRUE(m_Host->Datagrams().Resolve("127.0.0.1", address));
  EXPECT_EQ(address, 0x7F000001U);
  EXPECT_FALSE(m_Host->Datagrams().Resolve("", address));
}

TEST_P(HostContract, DatagramsToThisMachineAreSent) {
  const auto socket = m_Host->Datagrams().NewSender(0);
  const std::vector<uint8_t> bytes{1, 2, 3};
  const std::vector<Datagram> datagrams{{{0x7F000001U, 9}, bytes}, {{0x7F000001U, 9}, {}}};
  EXPECT_EQ(socket->Send(datagrams), 0);
  EXPECT_EQ(socket->Send({}), 0);
}

}  // namespace vex::test
