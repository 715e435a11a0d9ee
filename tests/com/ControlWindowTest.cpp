#include "components/com/ControlWindow.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "basic/Error.h"
#include "player/devices/frmMediaPlayer.h"

namespace vex::test {
namespace {

class ControlWindowTest : public testing::Test {
 protected:
  void Press(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    SendMessageA(m_Window->Native(), message, wParam, lParam);
  }
  [[nodiscard]] RECT Place() const {
    RECT place{};
    GetWindowRect(m_Window->Native(), &place);
    return place;
  }

  std::shared_ptr<ControlWindow> m_Window = std::make_shared<ControlWindow>();
};

TEST_F(ControlWindowTest, IsMadeHiddenAndBearsTheFormsCaption) {
  EXPECT_TRUE(m_Window->Loaded());
  EXPECT_FALSE(m_Window->Visible());
  const frmMediaPlayer form(m_Window, nullptr);
  EXPECT_EQ(FindWindowA("VexMonitorVideo", "Brillara Video"), m_Window->Native());
}

TEST_F(ControlWindowTest, IsPlacedInTwipsAndKeepsItsSize) {
  const RECT before = Place();
  m_Window->Place(100 * 15, -20 * 15);
  const RECT after = Place();
  EXPECT_EQ(after.left, 100);
  EXPECT_EQ(after.top, -20);
  EXPECT_EQ(after.right - after.left, before.right - before.left);
  EXPECT_EQ(after.bottom - after.top, before.bottom - before.top);
}

TEST_F(ControlWindowTest, ShowsAndHides) {
  m_Window->Show();
  EXPECT_TRUE(m_Window->Visible());
  m_Window->Hide();
  EXPECT_FALSE(m_Window->Visible());
  EXPECT_TRUE(m_Window->Loaded());
}

TEST_F(ControlWindowTest, TellsItsInnerSizeWhenItIsSizedAndBeforeItIsShown) {
  std::vector<std::pair<int32_t, int32_t>> sizes;
  m_Window->Resized = [&](int32_t lWidth, int32_t lHeight) { sizes.emplace_back(lWidth, lHeight); };
  m_Window->Show();
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.front(), (std::pair<int32_t, int32_t>{640, 480}));
  sizes.clear();
  RECT outside{0, 0, 300, 200};
  AdjustWindowRect(&outside, WS_OVERLAPPEDWINDOW, FALSE);
  SetWindowPos(m_Window->Native(), nullptr, 0, 0, outside.right - outside.left, outside.bottom - outside.top,
               SWP_NOMOVE | SWP_NOZORDER);
  ASSERT_FALSE(sizes.empty());
  EXPECT_EQ(sizes.back(), (std::pair<int32_t, int32_t>{300, 200}));
}

TEST_F(ControlWindowTest, CloseBoxDoesNothing) {
  {
    const frmMediaPlayer form(m_Window, nullptr);
    m_Window->Show();
    Press(WM_SYSCOMMAND, SC_CLOSE);
    Press(WM_CLOSE);
    EXPECT_TRUE(m_Window->Loaded());
    EXPECT_TRUE(m_Window->Visible());
  }
  Press(WM_CLOSE);
  EXPECT_TRUE(m_Window->Loaded());
}

TEST_F(ControlWindowTest, CloseBoxClosesWhereItMay) {
  m_Window->MayClose = [] { return true; };
  Press(WM_CLOSE);
  EXPECT_FALSE(m_Window->Loaded());
}

TEST_F(ControlWindowTest, UnloadedItIsNoMoreAndTakesNothingAmiss) {
  const HWND window = m_Window->Native();
  frmMediaPlayer form(m_Window, nullptr);
  form.Unload();
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_FALSE(m_Window->Loaded());
  EXPECT_FALSE(m_Window->Visible());
  form.Hide();
  form.Show();
  form.Position(15, 15);
  form.Unload();
  m_Window->Caption("none");
  m_Window->MoveControl(0, 0, 1, 1);
}

TEST_F(ControlWindowTest, WhatAListenerThrowsDoesNotReachTheMachine) {
  m_Window->Resized = [](int32_t, int32_t) { throw Error(1, "", "thrown"); };
  Press(WM_SIZE, SIZE_RESTORED, MAKELPARAM(10, 10));
  m_Window->MayClose = []() -> bool { throw Error(1, "", "thrown"); };
  Press(WM_CLOSE);
  EXPECT_TRUE(m_Window->Loaded());
}

TEST_F(ControlWindowTest, SeveralMayStandAtOnce) {
  const ControlWindow other;
  EXPECT_NE(other.Native(), m_Window->Native());
}

}  // namespace
}  // namespace vex::test
