#include "tests/names/names_support.h"

namespace {

using support::check, support::digits, support::NameProbe;
using FilenameResolutionTest = support::NameTest;

/// Resolves with one name for the result and again in place, which must give the same.
template <class Operation>
CFilename inBothWays(CFilename name, Operation operation, const char *argument) {
  CFilename out("before");
  EXPECT_TRUE((name.*operation)(out, argument) && (name.*operation)(name, argument));
  EXPECT_EQ(name, out);
  return out;
}

// Another drive than the current one is at its root, and a value from the environment does not count as one.
TEST_F(FilenameResolutionTest, GetAbsolute) {
  const support::Environment missing("kNone", nullptr), variable("kDir", "E:\\y");
  const std::string host = folder / "e/y";
  EXPECT_TRUE(macros.AddMacro("$host$", host.c_str()) && macros.AddMacro("$rel$", "sub"));
  check(3,
        R"($StdTypes$\x null C:\Kestrune\Types\x   x $StdTypes$ C:\Kestrune\Types\x   x.xml null D:\w\x.xml   x - D:\w\x
      .\x E:\y E:\y\x   .\x null D:\w\x   x .\E:\y E:\y\x   ..\x null D:\x   x \sub\ D:\sub\x   \x null D:\x
      \x E:\y D:\x   \ E:\y D:\w\   \\srv\s\x E:\y \\srv\s\x   C:x E:\y C:\x   d:x E:\y D:\w\x   Q:x null Q:\x
      1:x E:\y D:\w\1:x   C:\a\..\b null C:\b   C: null D:\w\C:   - $StdTypes$ $StdTypes$   .\ E:/y E:\y
      x .\sub D:\w\sub\x   - null -   - - -   $kNone$\x null D:\x   $kNone$x E:\y E:\y\x   $kNone$ E:\y E:\y
      $kDir$\x null D:\w\E:\y\x   x $kDir$ D:\w\E:\y\x   $rel$\x E:\ E:\sub\x   x $rel$ D:\w\sub\x   a/b null D:\w\a\b
      $host$/x null E:\y\x   x $host$ E:\y\x   /none/x E:\y Z:\none\x   //srv/s/x null \\srv\s\x   )" +
            host + "/x null E:\\y\\x  x " + host + " E:\\y\\x  - " + host + " E:\\y",
        [](const CFilename &n, const char *dir) { return inBothWays(n, &CFilename::GetAbsolute, dir); });
  const support::CurrentDirectory deep(make("d/" + std::string(200, 'a') + "/" + std::string(60, 'b')));
  CFilename out("before");
  EXPECT_TRUE(!CFilename("x").GetAbsolute(out, nullptr) && out == "before"); // a directory of more than 254 bytes
  check(3, R"(- a/b a\b   x/y a/b a/b\x/y   \x a\ a\x   \x a a\x   x a\ a\x   x - \x   \x - \x)",
        [](const auto &n, const char *x) { return n.Prefix(x); });
  const support::CodePage page(932);
  EXPECT_EQ(NameProbe("x").Prefix("C:\\\x95\\"), "C:\\\x95\\\\x"); // 95 5C is a character
}

TEST_F(FilenameResolutionTest, ARelativeFormOfAHostPathLeadsBackToItsFile) {
  const std::string host = folder / "e/x/a.xml", base = folder / "e/x"; // the current drive is D
  CFilename stored, back;
  CFilename(host.c_str()).GetRelative(stored, nullptr);
  EXPECT_STREQ(stored, "E:\\x\\a.xml");
  stored.GetAbsolute(back, nullptr);
  EXPECT_STREQ(back, "E:\\x\\a.xml");
  CFilename(host.c_str()).GetRelative(stored, base.c_str());
  EXPECT_STREQ(stored, "a.xml");
  CFilename(host.c_str()).GetRelative(stored, "E:\\x\\sub");
  EXPECT_STREQ(stored, "..\\a.xml");
}

TEST_F(FilenameResolutionTest, GetRelative) {
  EXPECT_TRUE(macros.AddMacro("$empty$", "") && macros.AddMacro("$bad$", "$ktestNone$"));
  check(3,
        R"(C:\Kestrune\Types\Vorlan.xml null $STDVORLANTYP$   C:\KESTRUNE\types\o.xml - $STDTYPES$\o.xml   D:\p\ D:\p -
      C:\Kestrune\Images\a.bmp null $STDIMAGES$\a.bmp   x\c:\kestrune\A null x\$KESTRUNE$\A   E:\x.xml null E:\x.xml
      $StdTypes$\a/b.xml D:\proj $StdTypes$\a\b.xml   D:\proj\a\B.xml d:\PROJ a\B.xml   D:\p\\a\..\b D:\p a\..\b
      D:\proj\x.xml D:\proj\sub ..\x.xml   D:\proj\other\x D:\proj/sub ..\other\x   D:\p\s D:\p\s D:\p\s   - D:\proj -
      D:\x.xml D:\proj D:\x.xml   D:\other\x D:\proj\sub D:\other\x   D:\project\x D:\proj D:\project\x   \a\b \c \a\b
      C:\Kestrune\Types\a $StdTypes$ a   C:\Kestrune\Images\a $StdXcvrTyp$ $STDIMAGES$\a   C:\Kestrune\a $StdTypes$ ..\a
      x\$StdTypes$ null x\$STDTYPES$)",
        [](const CFilename &n, const char *base) { return inBothWays(n, &CFilename::GetRelative, base); });
  check(3, R"($kestrune$ -1 $kestrune$\Types\x,11   $Kestrune$ 11 before,11   $StdTypes$ 11 $StdTypes$\x,17
      $empty$ -1 before,-1   $none$ -1 before,-1   - -1 before,-1)",
        [&](const CFilename &macro, const char *x) {
          CFilename source("C:\\KESTRUNE\\Types\\x"), out("before");
          int best = std::atoi(x);
          macros.TryToFit(source, macro.IsEmpty() ? nullptr : static_cast<const char *>(macro), out, best);
          return CString(out) + "," + digits(best);
        });
}

TEST_F(FilenameResolutionTest, SearchPath) {
  for (const char *file : {"d/w/a.xml", "d/w/sub/x.xml", "d/w/sub/.cfg/a.xml", "e/y/x.xml", "e/y/only", "e/a./b"})
    support::write(folder / file, "");
  const std::string host = folder / "e/y/x.xml";
  // A path of null: FileExists without a folder.
  check(
      3,
      R"(a.xml null D:\w\a.xml,1   ..\w\.\a.xml null D:\w\a.xml,1   D:\.\w\sub\..\a.xml null D:\w\a.xml,1   none null ,0
      D:\..\w null D:\w,1   sub\.cfg\..\x.xml null D:\w\sub\x.xml,1   D:\w\.. null D:,1   e:\y\X.xml null e:\y\X.xml,1
      sub\.cfg\a.xml null D:\w\sub\.cfg\a.xml,1   E:y\x.xml null E:\y\x.xml,1   \w\a.xml null D:\w\a.xml,1
      - null D:\w\,1   Q:x null ,0   \\w\a.xml null ,0   $StdTypes$ null ,0   a.xml E:\y D:\w\a.xml,1
      x.xml sub;E:\y D:\w\sub\x.xml,1
      x.xml E:/y;sub E:\y\x.xml,1   x.xml $StdTypes$;E:y E:\y\x.xml,1   y\x.xml C:\;E:\ E:\y\x.xml,1
      only C:\;;E:\y ,0   only - ,0   .\only E:\y\ ,0   \only E:\y ,0   E:only E:\y ,0   none C:\;E:\y;sub ,0
      )" + host +
          " null E:\\y\\x.xml,1   " + host + " sub E:\\y\\x.xml,1",
      [](const CFilename &n, const char *x) {
        CFilename found;
        const int result = x == nullptr ? n.FileExists(found, nullptr) : n.FindFile(found, x);
        return CString(found) + "," + digits(result);
      });
  const support::CurrentDirectory dotted(folder / "e/a.");
  CFilename found("before");
  EXPECT_TRUE(CFilename("none").FileExists(found, "") == 0 && found == "before");
  EXPECT_TRUE(CFilename("b").FileExists(found, "") == 1 && found == "E:\\a.\\b");
  check(3, R"(a;b;c 0 a   a;b;c 1 b   a;b;c 2 c   a;b;c 3 -   a;;c 1 -   a;;c 2 c   ~a~; 0 ~a~   a -1 -)",
        [](const CString &path, const char *x) { return GetSearchPathItem(path, std::atoi(x)); });
  check(3, R"(C:\a\b\c.xml C:\a;C:\A\B;C:\a c.xml   C:\a\b\c.xml C:\a;;C:\a\b b\c.xml   C:\a/b - C:\a/b
      C:\a\b C:\a\b;C:\a\ C:\a\b   C:\ab\c/d C:\a;C: ab\c\d)",
        [](const CFilename &n, const char *path) { return n.GetRelativePathName(path); });
}

TEST_F(FilenameResolutionTest, Smoosh) {
  check(3, R"(C:\aaaa\bbbb\cccc\file.txt 26 C:\aaaa\bbbb\cccc\file.txt   C:\aaaa\bbbb\cccc\file.txt 14 file.txt
      C:\aaaa\bbbb\cccc\file.txt 25 C:\...\bbbb\cccc\file.txt   C:\aaaa\bbbb\cccc\file.txt 24 C:\...\cccc\file.txt
      C:\aaaa\bbbb\cccc\file.txt 20 C:\...\cccc\file.txt   C:\aaaa\bbbb\cccc\file.txt 19 C:\...\file.txt
      C:\aaaa\bbbb\cccc\file.txt 15 C:\...\file.txt   C:\aaaa\bbbb\cccc\file.txt -1 file.txt
      C:\a\b.txt 9 b.txt   C:\...\b\c 9 C:\...\c   name.txt 3 name.txt   éé\bbbbbbbb\c 11 éé...\c)",
        [](const CFilename &n, const char *x) { return n.Smoosh(std::atoi(x)); });
}

} // namespace
