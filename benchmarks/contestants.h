#pragma once

#include "benchmarks/plain_chip_file.h"
#include "kestrune/kestrune_xml.h"

#include <memory>
#include <string>

// The ways to read and to write a chip data file that are compared. A copy of an object copies all texts. Each `load`
// fills a new object and returns how many models it has found, 0 on failure. Each `save` returns whether the file was
// written.

/// This library: every member as an object that loads and saves itself.
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

/// pugixml and structs that are filled, and written, by hand.
class PugixmlChipFile {
public:
  int load(const std::string &path);
  bool save(const std::string &path) const;

private:
  PlainChipFile m_file;
};

/// The document tree of libxml2, from which nothing is read but the number of models.
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

/// The parser beneath this library, which looks at every element and keeps nothing: what no reader can be faster than.
class ExpatPass {
public:
  static int load(const std::string &path);
};
