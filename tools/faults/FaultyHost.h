#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/Host.h"
#include "tools/faults/FaultPlan.h"

namespace vex {

// The host's seams with one call that fails in the way its contract has for failing: a result code, a false,
// an empty reference, or an Error. Clock, Timer and MessageBoxes are not here: they have no way to fail.

class FaultyFiles final : public Files {
 public:
  FaultyFiles(Files& files, FaultPlan& plan) : m_Files(files), m_Plan(plan) {}

  bool Read(const std::string& szPath, std::string& szContents, std::string* szReason) override {
    if (!m_Plan.Strikes("Read", szPath)) return m_Files.Read(szPath, szContents, szReason);
    if (szReason != nullptr) *szReason = "Device not ready";
    return false;
  }
  bool Write(const std::string& szPath, const std::string& szText, std::string* szReason) override {
    if (!m_Plan.Strikes("Write", szPath)) return m_Files.Write(szPath, szText, szReason);
    if (szReason != nullptr) *szReason = "Disk full";
    return false;
  }
  bool Publish(const std::string& szPath, const std::string& szText) override {
    return !m_Plan.Strikes("Publish", szPath) && m_Files.Publish(szPath, szText);
  }
  std::unique_ptr<FileLock> Lock(const std::string& szPath, std::string* szReason) override {
    if (!m_Plan.Strikes("Lock", szPath)) return m_Files.Lock(szPath, szReason);
    if (szReason != nullptr) *szReason = "No locks available";
    return nullptr;
  }
  std::unique_ptr<OpenFile> Open(const std::string& szPath) override {
    if (m_Plan.Strikes("Open", szPath)) return nullptr;
    auto file = m_Files.Open(szPath);
    if (!file) return nullptr;
    return std::make_unique<Opened>(std::move(file), m_Plan, szPath);
  }
  std::unique_ptr<GrowingFile> Grow(const std::string& szPath) override {
    return m_Plan.Strikes("Grow", szPath) ? nullptr : m_Files.Grow(szPath);
  }
  bool Rename(const std::string& szPath, const std::string& szNewPath) override {
    return !m_Plan.Strikes("Rename", szPath) && m_Files.Rename(szPath, szNewPath);
  }
  bool Exists(const std::string& szPath) override {
    return !m_Plan.Strikes("Exists", szPath) && m_Files.Exists(szPath);
  }
  std::vector<std::string> FilesIn(const std::string& szFolder) override {
    return m_Plan.Strikes("FilesIn", szFolder) ? std::vector<std::string>() : m_Files.FilesIn(szFolder);
  }
  bool MakeFolder(const std::string& szPath) override {
    return !m_Plan.Strikes("MakeFolder", szPath) && m_Files.MakeFolder(szPath);
  }
  bool Remove(const std::string& szPath) override {
    return !m_Plan.Strikes("Remove", szPath) && m_Files.Remove(szPath);
  }
  std::string HostPath(const std::string& szPath) override { return m_Files.HostPath(szPath); }
  std::string SystemPath(const std::string& szHostPath) override { return m_Files.SystemPath(szHostPath); }
  std::string ProgramFolder() override { return m_Files.ProgramFolder(); }
  std::string ProgramSuffix() const override { return m_Files.ProgramSuffix(); }

 private:
  class Opened final : public OpenFile {
   public:
    Opened(std::unique_ptr<OpenFile> file, FaultPlan& plan, std::string szPath)
        : m_File(std::move(file)), m_Plan(plan), m_Path(std::move(szPath)) {}
    uint64_t Size() const override { return m_File->Size(); }
    bool ReadAt(uint64_t offset, std::span<uint8_t> bytes) override {
      return !m_Plan.Strikes("ReadAt", m_Path) && m_File->ReadAt(offset, bytes);
    }

   private:
    std::unique_ptr<OpenFile> m_File;
    FaultPlan& m_Plan;
    std::string m_Path;
  };

  Files& m_Files;
  FaultPlan& m_Plan;
};

class FaultyRegistry final : public Registry {
 public:
  FaultyRegistry(Registry& registry, FaultPlan& plan) : m_Registry(registry), m_Plan(plan) {}

  int32_t OpenKey(RegistryRoot root, const std::string& szSubkey, uint32_t access,
                  RegistryKey& key) override {
    if (m_Plan.Strikes("OpenKey", szSubkey)) return RegistryAccessDenied;
    return m_Registry.OpenKey(root, szSubkey, access, key);
  }
  int32_t CreateKey(RegistryRoot root, const std::string& szSubkey, RegistryKey& key) override {
    if (m_Plan.Strikes("CreateKey", szSubkey)) return RegistryAccessDenied;
    return m_Registry.CreateKey(root, szSubkey, key);
  }
  int32_t QueryValue(RegistryKey key, const std::string& szName, RegistryKind& kind,
                     std::vector<uint8_t>* data, uint32_t& size) override {
    if (m_Plan.Strikes("QueryValue", szName)) return RegistryAccessDenied;
    return m_Registry.QueryValue(key, szName, kind, data, size);
  }
  int32_t SetValue(RegistryKey key, const std::string& szName, RegistryKind kind,
                   const std::vector<uint8_t>& data) override {
    if (m_Plan.Strikes("SetValue", szName)) return RegistryAccessDenied;
    return m_Registry.SetValue(key, szName, kind, data);
  }
  void CloseKey(RegistryKey key) override { m_Registry.CloseKey(key); }

 private:
  Registry& m_Registry;
  FaultPlan& m_Plan;
};

/// A send fails by a tray that is gone, or by a message that is too long for the channel.
class FaultyWindows final : public Windows {
 public:
  FaultyWindows(Windows& windows, FaultPlan& plan, SendResult failure)
      : m_Windows(windows), m_Plan(plan), m_Failure(failure) {}

  WindowHandle NewMainWindow() override {
    m_Plan.Check("NewMainWindow");
    return m_Windows.NewMainWindow();
  }
  WindowHandle NewWindow() override {
    m_Plan.Check("NewWindow");
    return m_Windows.NewWindow();
  }
  void DestroyWindow(WindowHandle hWnd) override { m_Windows.DestroyWindow(hWnd); }
  WindowProcedureReference ExchangeProcedure(WindowHandle hWnd, WindowProcedureReference procedure) override {
    return m_Windows.ExchangeProcedure(hWnd, std::move(procedure));
  }
  intptr_t CallProcedure(const WindowProcedureReference& procedure, const WindowMessage& message) override {
    return m_Windows.CallProcedure(procedure, message);
  }
  bool Exists(WindowHandle hWnd) const override {
    return !m_Plan.Strikes("Exists", {}) && m_Windows.Exists(hWnd);
  }
  SendResult SendCopyData(WindowHandle sender, WindowHandle target, const CopyData& copy) override {
    if (m_Plan.Strikes("SendCopyData", {})) return m_Failure;
    return m_Windows.SendCopyData(sender, target, copy);
  }
  bool Unsent(WindowHandle target) const override { return m_Windows.Unsent(target); }

 private:
  Windows& m_Windows;
  FaultPlan& m_Plan;
  SendResult m_Failure;
};

class FaultyProcesses final : public Processes {
 public:
  FaultyProcesses(Processes& processes, FaultPlan& plan) : m_Processes(processes), m_Plan(plan) {}

  ProcessId Start(const std::string& szCommandLine, int32_t lWindowStyle) override {
    m_Plan.Check("Start");
    return m_Processes.Start(szCommandLine, lWindowStyle);
  }
  void WaitFor(ProcessId process) override {
    m_Plan.Check("WaitFor");
    m_Processes.WaitFor(process);
  }

 private:
  Processes& m_Processes;
  FaultPlan& m_Plan;
};

class FaultySingleInstance final : public SingleInstance {
 public:
  FaultySingleInstance(SingleInstance& instance, FaultPlan& plan) : m_Instance(instance), m_Plan(plan) {}
  bool AlreadyRunning() override {
    return m_Plan.Strikes("AlreadyRunning", {}) || m_Instance.AlreadyRunning();
  }

 private:
  SingleInstance& m_Instance;
  FaultPlan& m_Plan;
};

/// What the machine may refuse a loop: another timer, another signal.
class FaultyEventLoop final : public EventLoop {
 public:
  FaultyEventLoop(EventLoop& loop, FaultPlan& plan) : m_Loop(loop), m_Plan(plan) {}

  std::unique_ptr<Timer> NewTimer(TimerOrder order) override {
    m_Plan.Check("NewTimer");
    return m_Loop.NewTimer(order);
  }
  std::unique_ptr<Signal> NewSignal(std::function<void()> handler) override {
    m_Plan.Check("NewSignal");
    return m_Loop.NewSignal(std::move(handler));
  }
  std::unique_ptr<Watch> WatchReadable(int64_t handle, std::function<void()> handler) override {
    return m_Loop.WatchReadable(handle, std::move(handler));
  }
  void Run() override { m_Loop.Run(); }
  void Quit() override { m_Loop.Quit(); }
  void Pump() override { m_Loop.Pump(); }

 private:
  EventLoop& m_Loop;
  FaultPlan& m_Plan;
};

class FaultyDatagrams final : public Datagrams {
 public:
  FaultyDatagrams(Datagrams& datagrams, FaultPlan& plan) : m_Datagrams(datagrams), m_Plan(plan) {}

  std::unique_ptr<DatagramSocket> NewSender(uint32_t multicastInterface) override {
    m_Plan.Check("NewSender");
    return std::make_unique<Socket>(m_Datagrams.NewSender(multicastInterface), m_Plan);
  }
  std::unique_ptr<DatagramReceiver> NewReceiver(EventLoop& loop, const DatagramAddress& at,
                                                DatagramHandler handler) override {
    m_Plan.Check("NewReceiver");
    return m_Datagrams.NewReceiver(loop, at, std::move(handler));
  }
  std::unique_ptr<DatagramReceiver> NewSharedReceiver(EventLoop& loop, const DatagramAddress& at,
                                                      uint32_t multicastInterface,
                                                      DatagramHandler handler) override {
    m_Plan.Check("NewReceiver");
    return m_Datagrams.NewSharedReceiver(loop, at, multicastInterface, std::move(handler));
  }
  /// A name that is not known is answered as such: looking up raises nothing.
  std::unique_ptr<HostLookUp> LookUp(EventLoop& loop, const std::string& szHost,
                                     HostLookUpHandler handler) override {
    if (!m_Plan.Strikes("LookUp", szHost)) return m_Datagrams.LookUp(loop, szHost, std::move(handler));
    return m_Datagrams.LookUp(
        loop, szHost, [handler = std::move(handler)](std::optional<uint32_t>) { handler(std::nullopt); });
  }
  bool Resolve(const std::string& szHost, uint32_t& address) override {
    return !m_Plan.Strikes("Resolve", {}) && m_Datagrams.Resolve(szHost, address);
  }
  std::string Describe(int32_t lCode) const override { return m_Datagrams.Describe(lCode); }

 private:
  class Socket final : public DatagramSocket {
   public:
    Socket(std::unique_ptr<DatagramSocket> socket, FaultPlan& plan)
        : m_Socket(std::move(socket)), m_Plan(plan) {}
    int32_t Send(std::span<const Datagram> datagrams) override {
      constexpr int32_t lUnreachable = 101;
      return m_Plan.Strikes("Send", {}) ? lUnreachable : m_Socket->Send(datagrams);
    }

   private:
    std::unique_ptr<DatagramSocket> m_Socket;
    FaultPlan& m_Plan;
  };

  Datagrams& m_Datagrams;
  FaultPlan& m_Plan;
};

}  // namespace vex
