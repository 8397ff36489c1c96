/// \example find_clock.cpp
/// Finds a clock and a multiplier of a clocking scheme: by what people read, and by the numbers.
///
///    find_clock 4 "10 MHz" 1/2

#include <cstdlib>
#include <iostream>
#include <kestrune/kestrune_xml.h>

namespace {

int run(int scheme, const char *clockText, const char *multiplierText) {
  CVorlanTyp4 document;
  if (document.LoadFromFile("$StdVorlanTyp$") < 0) {
    std::cerr << "the chip data cannot be read\n";
    return 2;
  }
  CClockingSchemes &schemes = document.ClockingSchemes;
  CClock *clock = nullptr;
  CMultiplier *multiplier = nullptr;
  if (!schemes.FindByDisplay(scheme, clockText, multiplierText, &clock, &multiplier)) {
    std::cerr << (clock != nullptr ? "the clock has no such multiplier\n" : "there is no such clock\n");
    return 1;
  }
  std::cout << clock->Display() << " is " << clock->Value() << " kHz, encoding " << clock->Encoding() << '\n'
            << multiplier->Display() << " is " << multiplier->Value() << ", encoding " << multiplier->Encoding() << '\n'
            << "the core runs at " << clock->Value() * multiplier->Value() << " kHz\n";

  CClock *sameClock = nullptr;
  CMultiplier *sameMultiplier = nullptr;
  const bool found = schemes.FindByValue(scheme, clock->Value(), multiplier->Value(), &sameClock, &sameMultiplier);
  std::cout << "by value: " << (found && sameClock == clock && sameMultiplier == multiplier ? "the same" : "another")
            << '\n';
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 4)
    return 2;
  CoInitialize(nullptr);
  int status = 2;
  try {
    status = run(std::atoi(argv[1]), argv[2], argv[3]);
  } catch (CKRXException *exception) { // a scheme or a clock whose number is not one
    std::cerr << exception->GetFormattedMessage() << '\n';
    exception->Delete();
  }
  CoUninitialize();
  return status;
}
