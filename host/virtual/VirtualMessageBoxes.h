#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/MessageBoxes.h"

namespace vex {

/// Message boxes that are written down and close at once. What a test hangs on OnShow happens while the box
/// stands; it may pump, or move time.
class VirtualMessageBoxes final : public vex::MessageBoxes {
 public:
  struct Box {
    std::string Text;
    std::string Title;  ///< as given: empty stands for the program's own
    friend bool operator==(const Box&, const Box&) = default;
  };

  void Show(const std::string& szText, const std::string& szTitle) override;

  [[nodiscard]] const std::vector<Box>& Shown() const { return m_Shown; }
  void OnShow(std::function<void(const Box&)> handler) { m_OnShow = std::move(handler); }

 private:
  std::vector<Box> m_Shown;
  std::function<void(const Box&)> m_OnShow;
};

}  // namespace vex
