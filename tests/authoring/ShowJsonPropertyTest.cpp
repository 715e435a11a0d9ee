#include <gtest/gtest.h>

#include "host/virtual/VirtualFiles.h"
#include "tests/show/AnyShow.h"
#include "tools/authoring/CheckFile.h"
#include "tools/authoring/ShowJson.h"

namespace vex {
namespace {

std::string ThereAndBack(const Show& show) {
  return ShowToText(*ShowFromJson(ShowToJson(show, *rc::gen::arbitrary<bool>())));
}

TEST(ShowJsonProperty, AnyShowComesBackToTheByte) {
  EXPECT_TRUE(rc::check("import(export(show)) writes the same", [] {
    const auto show = AnyShow();
    RC_ASSERT(ThereAndBack(*show) == ShowToText(*show));
  }));
}

std::string DamagedShow() {
  std::string szText = ShowToText(*AnyShow());
  const std::string szDamages = "(),*TFx0-\xFF";
  for (int32_t lLeft = *rc::gen::inRange(0, 6); lLeft > 0; --lLeft) {
    const size_t position = *rc::gen::inRange<size_t>(0, szText.size());
    szText[position] = szDamages[*rc::gen::inRange<size_t>(0, szDamages.size())];
  }
  return szText;
}

TEST(ShowJsonProperty, WhateverIsReadFromADamagedFileComesBackAsCheckTellsIt) {
  EXPECT_TRUE(rc::check("import(export(file)) == check(file)", [] {
    VirtualFiles files;
    files.Put("C:\\eve.shw", DamagedShow());
    const CheckedFile checked = CheckFile(files, "C:\\eve.shw", FileKind::Show);
    const FileOutcome exported = ExportShow(files, "C:\\eve.shw", false);
    RC_ASSERT(exported.Failure.has_value() == checked.Failure.has_value());
    if (checked.Failure) {
      RC_ASSERT(exported.Failure->Number == checked.Failure->Number);
      return;
    }
    files.Put("C:\\eve.json", exported.Text);
    const ShowImport import = ImportShow(files, "C:\\eve.json", "C:\\new.shw");
    RC_ASSERT(!import.Failure);
    RC_ASSERT(import.Text == checked.Text);
  }));
}

TEST(ShowJsonProperty, DamagedJsonIsReadOrRefusedWithAPlace) {
  EXPECT_TRUE(rc::check("no JSON does harm", [] {
    std::string szJson = ShowToJson(*AnyShow(), true);
    const std::string szDamages = "{}[]\",:x0\n\\\xC3";
    for (int32_t lLeft = *rc::gen::inRange(1, 4); lLeft > 0; --lLeft) {
      const size_t position = *rc::gen::inRange<size_t>(0, szJson.size());
      szJson[position] = szDamages[*rc::gen::inRange<size_t>(0, szDamages.size())];
    }
    try {
      static_cast<void>(ShowToText(*ShowFromJson(szJson)));
    } catch (const Error& error) {
      RC_ASSERT(error.Number == ErrorTypeMismatch);
      RC_ASSERT(error.Description.find(": ") != std::string::npos);
    }
  }));
}

}  // namespace
}  // namespace vex
