#include "components/recorded/RecordedMediaWindow.h"

#include <utility>

namespace vex {

RecordedMediaWindow::RecordedMediaWindow(std::shared_ptr<Recorder> recorder)
    : m_Recorder(std::move(recorder)) {}

void RecordedMediaWindow::Place(int32_t lLeftTwips, int32_t lTopTwips) {
  m_Left = lLeftTwips;
  m_Top = lTopTwips;
}

void RecordedMediaWindow::Show() {
  m_Loaded = true;  // showing a form that was unloaded loads it again
  if (m_Visible) return;
  m_Visible = true;
  m_Recorder->Window("show");
}

void RecordedMediaWindow::Hide() {
  if (!m_Visible) return;
  m_Visible = false;
  m_Recorder->Window("hide");
}

void RecordedMediaWindow::Unload() {
  Hide();
  m_Loaded = false;
}

}  // namespace vex
