#include "benchmarks/contestants.h"

#include <iterator>
#include <pugixml.hpp>

namespace {

template <class Record>
void readItems(const pugi::xml_node &parent, const char *itemTag, std::vector<Record> &records);

struct Reader {
  pugi::xml_node node;

  void attribute(const char *tag, std::string &value) const { value = node.attribute(tag).value(); }
  void element(const char *tag, std::string &value) const { value = node.child(tag).text().get(); }
  template <class Record>
  void list(const char *tag, const char *itemTag, std::vector<Record> &records) const {
    readItems(node.child(tag), itemTag, records);
  }
};

template <class Record>
void readItems(const pugi::xml_node &parent, const char *itemTag, std::vector<Record> &records) {
  const auto items = parent.children(itemTag);
  records.reserve(static_cast<std::size_t>(std::distance(items.begin(), items.end())));
  for (const pugi::xml_node &item : items)
    Record::visit(records.emplace_back(), Reader{item});
}

template <class Record>
void writeItems(pugi::xml_node parent, const char *itemTag, const std::vector<Record> &records);

struct Writer {
  pugi::xml_node node;

  void attribute(const char *tag, const std::string &value) { node.append_attribute(tag).set_value(value.c_str()); }
  void element(const char *tag, const std::string &value) { node.append_child(tag).text().set(value.c_str()); }
  template <class Record>
  void list(const char *tag, const char *itemTag, const std::vector<Record> &records) {
    writeItems(node.append_child(tag), itemTag, records);
  }
};

template <class Record>
void writeItems(pugi::xml_node parent, const char *itemTag, const std::vector<Record> &records) {
  for (const Record &record : records)
    Record::visit(record, Writer{parent.append_child(itemTag)});
}

} // namespace

int PugixmlChipFile::load(const std::string &path) {
  pugi::xml_document document;
  if (!document.load_file(path.c_str()))
    return 0;
  const pugi::xml_node root = document.child("VorlanTyp");
  PlainContents::visit(m_file.contents, Reader{root.child("Contents")});
  readItems(root.child("VorlanModels"), "VorlanModel", m_file.models);
  return static_cast<int>(m_file.models.size());
}

bool PugixmlChipFile::save(const std::string &path) const {
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
  pugi::xml_node root = document.append_child("VorlanTyp");
  PlainContents::visit(m_file.contents, Writer{root.append_child("Contents")});
  writeItems(root.append_child("VorlanModels"), "VorlanModel", m_file.models);
  root.append_child("LinkCompatibleModels");
  root.append_child("ClockingSchemes");
  return document.save_file(path.c_str());
}
