#include "tests/names/names_support.h"

#include <dlfcn.h>

namespace {

using LinkCompatibility = support::NameTest;

TEST_F(LinkCompatibility, AsksTheStandardFile) {
  void *const library = ::dlopen(KESTRUNE_LIBRARY, RTLD_NOW); // which the test has anyway
  const auto compatible = reinterpret_cast<bool (*)(int, int)>(::dlsym(library, "isLinkCompatible"));
  ASSERT_NE(compatible, nullptr);
  const auto pairs = [&] {
    std::string all;
    for (const int model : {-5, 3, 4, 6, 7, 16, 17})
      for (const int other : {-6, -5, 0, 5, 8, 17, 18, 19, 20, 21, 22, 23})
        if (compatible(model, other))
          all += std::to_string(model) + ":" + std::to_string(other) + " ";
    return all;
  };
  const std::string equal = "-5:-5 17:17 ", listed = "-5:-6 -5:-5 16:17 16:18 16:19 17:17 ";
  const std::string types = folder / "c/Kestrune/Types/";
  support::write(types + "Vorlan.xml", support::read(KESTRUNE_TEST_DATA "/chip/link-compatible.xml"));
  EXPECT_EQ(pairs(), equal) << "a thread without COM";
  const support::Com com;
  EXPECT_EQ(pairs(), listed);
  support::write(types + "Vorlan-1.xml",
                 "<VorlanTyp><LinkCompatibleModels><LinkCompatibleModel Name='7'><LinkCompatibleList>"
                 "8</LinkCompatibleList></LinkCompatibleModel></LinkCompatibleModels></VorlanTyp>");
  EXPECT_EQ(pairs(), listed) << "the table of an add-on has no part in it";
  support::write(types + "Vorlan-2.xml", "broken");
  EXPECT_EQ(pairs(), equal) << "the last add-on decides";
}

} // namespace
