#pragma once

#include <string>

/// Writes a chip data file with `count` invented models, byte for byte as CVorlanTyp4::SaveToFile does. The models are
/// numbered from `first`; the texts of a model depend only on its number, and no two models have the same name or key.
/// Throws std::ios_base::failure when the file cannot be written.
void WriteChipFile(const std::string &path, int first, int count);
