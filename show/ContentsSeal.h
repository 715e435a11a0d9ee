#pragma once

#include <memory>
#include <string>

namespace vex {

/// The seal on a show that was read from a file: the text that ShowToText gives for it, kept so that the
/// heartbeat's "has the file changed?" need not write the whole show again every second. Every part of a
/// sealed show knows the seal and breaks it when it is changed, whoever changes it. Taking a turn in a
/// round robin does not change the text but leaves its trace too, so that nobody is given a used show as
/// a fresh one.
struct ContentsSeal {
  std::shared_ptr<const std::string> Text;
  bool Broken = false;
  bool Played = false;
};

/// A part of a show, or the show itself, that reports its changes to the seal. A copy of a part is a part
/// of no show yet: it starts without seal.
class SealedPart {
 public:
  SealedPart() = default;
  SealedPart(const SealedPart&) {}
  SealedPart& operator=(const SealedPart&) {
    BreakSeal();
    return *this;
  }

  void PutUnder(std::shared_ptr<ContentsSeal> seal) { m_Seal = std::move(seal); }

 protected:
  ~SealedPart() = default;
  void BreakSeal() {
    if (m_Seal) m_Seal->Broken = true;
  }
  void MarkPlayed() {
    if (m_Seal) m_Seal->Played = true;
  }
  [[nodiscard]] const std::shared_ptr<ContentsSeal>& CurrentSeal() const { return m_Seal; }

 private:
  std::shared_ptr<ContentsSeal> m_Seal;
};

}  // namespace vex
