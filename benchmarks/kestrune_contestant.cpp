#include "benchmarks/contestants.h"

KestruneChipFile::KestruneChipFile() { CoInitialize(nullptr); }

KestruneChipFile::KestruneChipFile(const KestruneChipFile &other) : m_document(other.m_document) {
  CoInitialize(nullptr);
}

KestruneChipFile::~KestruneChipFile() { CoUninitialize(); }

int KestruneChipFile::load(const std::string &path) {
  return m_document.LoadFromFile(path.c_str()) >= 0 ? m_document.VorlanModels4.Count() : 0;
}

bool KestruneChipFile::save(const std::string &path) {
  return m_document.SaveToFile(path.c_str(), nullptr, true) == S_OK;
}
