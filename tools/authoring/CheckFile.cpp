#include "tools/authoring/CheckFile.h"

#include "host/CodePage.h"
#include "schedule/ScheduleFunctions.h"
#include "schedule/YearScheduleFunctions.h"
#include "show/ShowFunctions.h"
#include "show/lists/Serialize.h"
#include "tools/authoring/DamagePlace.h"

namespace vex {

namespace {

void ReadAndWrite(std::string_view szText, FileKind kind, CheckedFile& checked) {
  switch (kind) {
    case FileKind::List: {
      const FieldArray fields = ListFromText(szText);
      checked.Fields.assign(fields.begin(), fields.end());
      break;
    }
    case FileKind::Week:
      checked.Text = ScheduleToText(*ScheduleFromText(szText));
      break;
    case FileKind::Year:
      checked.Text = YearScheduleToText(*YearScheduleFromText(szText));
      break;
    case FileKind::Show:
      checked.Text = ShowToText(*RequiredShow(szText));
      checked.LeftOut = LeftOut(szText);
      break;
  }
}

}  // namespace

FileKind KindOfFile(std::string_view szPath) {
  const size_t separator = szPath.find_last_of("\\/:");
  const std::string szName =
      FoldCase(separator == std::string_view::npos ? szPath : szPath.substr(separator + 1));
  if (szName == "weeksched.qsc") return FileKind::Week;
  if (szName == "yearsched.qsc") return FileKind::Year;
  return FileKind::Show;
}

CheckedFile CheckFile(Files& files, const std::string& szPath, FileKind kind) {
  CheckedFile checked;
  std::string szText;
  bool boolRead = false;
  try {
    szText = ReadText(files, szPath);
    boolRead = true;
    ReadAndWrite(szText, kind, checked);
  } catch (const Error& error) {
    checked.Failure = error;
    if (boolRead) checked.Words = DamagePlace(kind, szText);
  }
  return checked;
}

std::shared_ptr<Show> RequiredShow(std::string_view szText) {
  auto show = ShowFromText(szText);
  if (!show) throw PlatformError(ErrorObjectNotSet);
  return show;
}

}  // namespace vex
