#pragma once

#include <string>

/// Writes a chip data file of `count` invented models, byte by byte as CVorlanTyp4::SaveToFile does. The models have
/// the numbers `first` and up; the texts of a model depend on its number alone, and no two have a name or a key in
/// common. Throws std::ios_base::failure when the file cannot be written.
void WriteChipFile(const std::string &path, int first, int count);
