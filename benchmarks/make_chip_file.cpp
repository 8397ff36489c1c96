#include "benchmarks/chip_file_generator.h"

#include <cstdlib>
#include <exception>
#include <iostream>

// Writes an invented chip data file:  make_chip_file FILE COUNT [FIRST]
// An add-on of x.xml is named x-1.xml and needs other model numbers: make_chip_file x-1.xml 5000 1000000

int main(int argc, char **argv) {
  if (argc < 3 || argc > 4) {
    std::cerr << "usage: make_chip_file FILE COUNT [FIRST]\n";
    return 2;
  }
  try {
    WriteChipFile(argv[1], argc > 3 ? std::atoi(argv[3]) : 0, std::atoi(argv[2]));
  } catch (const std::exception &error) {
    std::cerr << "make_chip_file: " << argv[1] << ": " << error.what() << '\n';
    return 1;
  }
  return 0;
}
