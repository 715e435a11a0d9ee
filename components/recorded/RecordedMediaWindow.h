#pragma once

#include <memory>

#include "components/recorded/Recorder.h"
#include "player/devices/MediaPlayer.h"

namespace vex {

/// A video window that nobody sees: it writes down when it would appear and disappear, and remembers where.
class RecordedMediaWindow final : public MediaWindow {
 public:
  explicit RecordedMediaWindow(std::shared_ptr<Recorder> recorder);

  void Place(int32_t lLeftTwips, int32_t lTopTwips) override;
  void Show() override;
  void Hide() override;
  [[nodiscard]] bool Loaded() const override { return m_Loaded; }
  [[nodiscard]] bool Visible() const override { return m_Visible; }
  void Unload() override;
  void Caption(const std::string& szCaption) override { m_Caption = szCaption; }

  [[nodiscard]] int32_t Left() const { return m_Left; }
  [[nodiscard]] int32_t Top() const { return m_Top; }
  [[nodiscard]] const std::string& Caption() const { return m_Caption; }

 private:
  std::shared_ptr<Recorder> m_Recorder;
  std::string m_Caption;
  int32_t m_Left = 0;
  int32_t m_Top = 0;
  bool m_Loaded = true;
  bool m_Visible = false;
};

}  // namespace vex
