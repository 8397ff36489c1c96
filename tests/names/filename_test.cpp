#include "tests/names/names_support.h"

#include <type_traits>

namespace {

using support::check, support::digits;
using FilenameTest = support::NameTest;

TEST_F(FilenameTest, AssignmentNormalises) {
  CFilename name("old");
  check(2, R"(- -   a/b a\b   C:\a\..\b C:\b   C:\a\b\..\..\c C:\c   C:/a/./b//../c C:\a\b\c   \a\..\b \b
      \..\b \..\b   a\..\b a\..\b   ..\a ..\a   C:\..\a C:\..\a   .\a .\a   .\.\a .\a   ..\a\..\b ..\a\..\b
      C:\..\a\..\b C:\..\a\..\b   C:\x\a..\b C:\x\b   a\b\.. a\b\..   a\.\.\b a\b   x.\y xy   ..\.\a ..\a
      a...\b a...\b   a\\b a\b   a\\\b\\c a\b\c   C:\\a\\b C:\\a\\b   \\srv\a\\b \\srv\a\\b   \\srv\s\..\x \\srv\x
      a\\b:\\c\\d a\b:\\c\\d)",
        [&](const CString &n, const char *) {
          return (name = n) == (name = static_cast<const char *>(n)) ? name : "differ";
        });
  EXPECT_EQ(name = CFilename("a/b"), "a/b");
  const support::CodePage page(932);
  EXPECT_EQ(name = "C:\\a\x95\\\\..\\\x83\\\\\\b", "C:\\\x83\\\\b"); // 95 5C and 83 5C are characters
}

TEST_F(FilenameTest, Parts) {
  // Drive and last character, root, dir, path, name, ext, name with ext, segments.
  check(2, R"(C:\a\b.c.txt Ct,C:\,\a,C:\a,b,.C.TXT,b.c.txt,2   name.xml Dl,D:\,name.xml,,name,.XML,name.xml,1
      c:name.xml Cl,C:\,name.xml,,name,.XML,name.xml,1   C:\x.txt Ct,C:\,,C:\,x,.TXT,x.txt,1
      \a\b Db,D:\,\a,\a,b,,b,2   \x.txt Dt,D:\,,\,x,.TXT,x.txt,1   C:\a\ C\,C:\,\a,C:\a,,,,1
      C:\a\b\ C\,C:\,\a\b,C:\a\b,,,,2   \:x \x,\:\,,\,:x,,:x,1   C:\a.b\c Cc,C:\,\a.b,C:\a.b,c,,c,2
      .profile De,D:\,.profile,,.profile,.PROFILE,.profile,1   C: C:,C:\,,,,,,1   a\.b.c Dc,D:\,a,a,.b.c,.B.C,.b.c,2
      a/b.c Dc,D:\,a\b.c,,a\b,.C,a/b.c,1   C:\ C\,C:\,,C:\,,,,0   \\srv\share\x Dx,D:\,\\srv\share,\\srv\share,x,,x,4
      \\s\x.y Dy,D:\,\\s,\\s,x,.Y,x.y,3)",
        [](const CFilename &n, const char *) {
          std::string all = {n.GetDrive(), n.GetLastChar(), ','};
          for (const CFilename &part : {n.GetRoot(), n.GetDir(), n.GetPath(), n.GetName(), n.GetExt(), n.GetNameExt()})
            (all += part) += ',';
          return CString(all.c_str()) + digits(n.GetSegmentCount());
        });
  check(3, R"(C:\a\b\c -3 C:\a   C:\a\b\c 0 C:\a   C:\a\b\c 1 C:\a\b   C:\a\b\c 2 C:\a\b\c   C:\a\b\c 9 C:\a\b\c)",
        [](const CFilename &n, const char *x) { return n.GetPathSegment(std::atoi(x)); });
  EXPECT_TRUE(CFilename().GetLastChar() == 0 && CFilename().GetSegmentCount() == 0 && CFilename().GetDrive() == 'D');
  const support::CodePage page(932);
  EXPECT_EQ(CFilename("C:\\\x95\\.a").GetNameExt() + CFilename("\x95\\").GetLastChar(), "\x95\\.a\x95");
}

TEST_F(FilenameTest, Growing) {
  // The join, AppendName, AppendExt.
  check(3, R"(a b a\b,a\b,a.b   a\ \b a\b,a\b,a\b   a\ b a\b,a\b,a\b   a .b a.b,a\.b,a.b   C : C:,C\:,C.:   a - a,a\,a
      - - ,,   C: b C:\b,C:\b,C:\b   a. b a.b,a.b,a.b   a ~b a~b,a\~b,a.~b   - a/b a/b,a/b,.a/b
      - x\y.t x\y.t,y.t,.x\y.t   C:\a x\y.t C:\a\x\y.t,C:\a\y.t,C:\a.x\y.t   a.b.c xml a.b.c\xml,a.b.c\xml,a.xml
      n ..x n..x,n\..x,n..x   a.b\c .xml a.b\c.xml,a.b\c\.xml,a.b\c.xml   a/b.c - a/b.c,a/b.c\,a\b
      .a .x .a.x,.a\.x,.a.x   .a.b - .a.b,.a.b\,.a.b   C:\.p x C:\.p\x,C:\.p\x,C:\.p.x)",
        [](CFilename n, const char *x) {
          const CString joined = CFilename(n) += x, named = CFilename(n).AppendName(x);
          return joined + "," + named + "," + CString(n.AppendExt(x));
        });
  check(3, R"(- \ \   C: \ C:\   a\ \ a\   a. \ a.   a\ . a\   a. : a.   C: . C:   C: : C:   a \ a\   a\ x a\x)",
        [](CFilename n, const char *x) { return n.Append(*x), n; });
  check(2, R"(C:\a\b\ C:\a   C:\a C:   C:\ C:   name name   name\\ name   a/b\c a\b   \\srv\x \\srv   \a -   - -)",
        [](CFilename n, const char *) { return --n; });
  CFilename self("a\\b");
  (self.AppendName(self) += self, self).AppendSlash();
  EXPECT_EQ(self, "a\\b\\b\\a\\b\\b\\");
}

// What a program writes with names compiles, and takes the overload that it means.
TEST_F(FilenameTest, NamesMixWithOtherTexts) {
  const CFilename b("b/c");
  const CString text("b/c");
  const CMacroString macro("b/c");
  const char *const null = nullptr;
  EXPECT_EQ("a" + b + text + macro + "x", "a\\b/c\\b/c\\b/c\\x");
  EXPECT_EQ(text + b + CFilename(macro) + CFilename(text) + CFilename(L"w"), "b/c\\b/c\\b/c\\b/c\\w");
  static_assert(std::is_same_v<decltype("a" + b), CFilename> && std::is_same_v<decltype(b + text), CFilename>);
  static_assert(std::is_same_v<decltype(text + b), CFilename> && std::is_same_v<decltype(b + b), CFilename>);
  EXPECT_TRUE(b == "b/c" && "b/c" == b && b == text && text == b && b != "x" && b == macro && b < "c" && b[1] == '/');
  CFilename name = "x/y";
  EXPECT_EQ((name = macro, name += text, name += macro), "b\\c\\b/c\\b/c");
  EXPECT_TRUE((name = null).IsEmpty() && (name += null).IsEmpty() && name.CopyFileA(null) == 2);
  EXPECT_EQ(name.AppendName(null).AppendExt(null) + null + CFilename(null) + macros.Prefix(null), "");
}

TEST_F(FilenameTest, Form) {
  EXPECT_TRUE(macros.AddMacro("$good$", "D:\\x") && macros.AddMacro("$bad$", "$ktestNone$"));
  // IsAbsolute, IsRelative, AbsPathName, CurDirRelPathName, IncludesMacro.
  check(2, R"(\x.txt 01100   C:\x 10110   C:\ 10110   C:x 01010   C: 01010   \\srv\x 10100   - 01000   .\x 01010
      a\.b 01010   a.b\c 01000   x\y 01000   /x 01000   $good$\x 10001   $good\x 01000   a$GOOD$$bad$ 01001
      $bad$C:\ 01000   C:\$bad$ 10110   $bad$$good$ 01000)",
        [](const CFilename &n, const char *) {
          return digits(n.IsAbsolute(), n.IsRelative(), n.AbsPathName(), n.CurDirRelPathName(), n.IncludesMacro());
        });
}

TEST_F(FilenameTest, Files) {
  using Clock = std::filesystem::file_time_type::clock;
  const std::string file = folder / "c/f.txt", copied = folder / "d/w/copy.txt", content(20003, 'x');
  const auto isOld = [](const std::string &path) {
    return std::filesystem::last_write_time(path) < Clock::now() - std::chrono::hours(24);
  };
  CFilename name("C:\\f.txt"), copy("D:copy.txt"), none("C:\\none");
  CString taken = "D:\\w\\copy.txt", fresh = "C:/a/../g.txt";
  support::write(file, content);
  std::filesystem::last_write_time(file, Clock::now() - std::chrono::hours(48));
  EXPECT_TRUE(name.SetReadOnly(1) == 1 && none.SetReadOnly(0) == 0 && name.CopyFileA("copy.txt") == 0);
  EXPECT_TRUE(support::read(copied) == content && isOld(copied));
  EXPECT_TRUE(name.SetReadOnly(0) == 1 && name.CopyFileA("C:\\f.txt") == 3 && support::read(file) == content);
  EXPECT_TRUE(name.CopyFileA("copy.txt") == 3 && none.CopyFileA("D:\\none") == 2); // the copy is read-only too
  EXPECT_TRUE(name.Touch() == 0 && !isOld(file));
  // FileExists, ReadOnly, IsDirectory, FileSize.
  check(2,
        R"(C:\f.txt 10020003   c:/F.TXT 10020003   D:copy.txt 11020003   C:\none 0100   Q:\ 0110   Q:\x 0100
      $Kestrune$ 0100   \\srv\f.txt 0100   - 0100   D:\w\.. 1010   )" +
            file + " 10020003",
        [](const CFilename &n, const char *) {
          return n.GetShortFileName() +
                 digits(n.FileExists(), n.ReadOnly(), n.IsDirectory(), n.IsDirectory() ? 0 : n.FileSize());
        });
  make("c/a");
  EXPECT_TRUE(name.Rename(taken) != 0 && name == "C:\\f.txt");
  EXPECT_TRUE(name.Rename(fresh) == 0 && name == "C:\\g.txt" && support::read(folder / "c/g.txt") == content);
  EXPECT_EQ(none.Rename(fresh), static_cast<unsigned long>(CFileException::fileNotFound));
  EXPECT_TRUE(copy.Remove() == 1 && copy.Remove() == 0 && !std::filesystem::exists(copied)); // though read-only
  std::filesystem::resize_file(folder / "c/g.txt", 0x1'8000'0005);                           // sparse
  EXPECT_EQ(name.FileSize(), 0x8000'0005L);
  check(2, R"(C:\a\ 0   C:\a\b\\ 0   C:\a\b 0   C:\x\y -1   C:\g.txt 1   C:\ 0   Q:\x -1   - -1)",
        [](const CFilename &n, const char *) { return digits(n.mkDir()); });
  EXPECT_TRUE(std::filesystem::is_directory(folder / "c/a/b"));
  for (const auto failing : {+[] { return CFilename("C:\\a").Remove(); }, +[] { return CFilename("Q:\\x").Touch(); }})
    try {
      ADD_FAILURE() << failing();
    } catch (CFileException *exception) {
      exception->Delete();
    }
}

} // namespace
