#include "tests/names/names_support.h"

#include <sys/stat.h>

namespace {

// A pipe waits for a writer: whoever opened it would not return.
TEST(CompanionFiles, WhatIsNotAFileIsNone) {
  const support::Com com;
  const support::TempFolder folder;
  const support::Environment replacements("PFDT", folder.path().c_str());
  support::write(folder / "t/V.xml", "<VorlanTyp/>");
  support::write(folder / "t/S.xml", "<StdXcvr/>");
  for (const char *pipe : {"vorlan.xml", "stdxcvr.xml", "t/V-1.xml", "t/UserXcvr.xml"})
    ASSERT_EQ(::mkfifo((folder / pipe).c_str(), 0666), 0) << pipe;
  EXPECT_EQ(CVorlanTyp3().LoadFromFile((folder / "t/V.xml").c_str()), S_OK);
  EXPECT_EQ(CVorlanTyp4().LoadFromFile((folder / "t/V.xml").c_str()), S_OK);
  EXPECT_EQ(CStdXcvr3().LoadFromFile((folder / "t/S.xml").c_str()), S_OK);
}

} // namespace
