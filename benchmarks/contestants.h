#pragma once

#include "benchmarks/plain_chip_file.h"
#include "kestrune/kestrune_xml.h"

#include <memory>
#include <string>

// The ways to read and write a chip data file that are compared. A copy of an object copies all texts. `load` fills a
// new object and returns the number of models found, or 0 on failure. `save` returns whether the file was written.

/// This library: each member is an object that loads and saves itself.
class KestruneChipFile {
public:
  KestruneChipFile();
  KestruneChipFile(const KestruneChipFile &other);
  KestruneChipFile &operator=(const KestruneChipFile &) = delete;
  ~KestruneChipFile();

  int load(const std::string &path);
  bool save(const std::string &path);

private:
  CVorlanTyp4 m_document;
};

/// pugixml, with structs that are filled and written by hand.
class PugixmlChipFile {
public:
  int load(const std::string &path);
  bool save(const std::string &path) const;

private:
  PlainChipFile m_file;
};

/// The document tree of libxml2; only the number of models is read from it.
class LibXml2Tree {
public:
  LibXml2Tree();
  LibXml2Tree(const LibXml2Tree &) = delete;
  LibXml2Tree &operator=(const LibXml2Tree &) = delete;
  ~LibXml2Tree();

  int load(const std::string &path);

private:
  struct Tree;
  std::unique_ptr<Tree> m_tree;
};

/// Only the parser of this library, which visits each element and stores nothing: a lower bound for any reader based on
/// it.
class ExpatPass {
public:
  static int load(const std::string &path);
};
