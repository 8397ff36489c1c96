#include "benchmarks/contestants.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <string_view>

struct LibXml2Tree::Tree {
  struct End {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
  };
  std::unique_ptr<xmlDoc, End> document;
};

LibXml2Tree::LibXml2Tree() : m_tree(std::make_unique<Tree>()) {}
LibXml2Tree::~LibXml2Tree() = default;

int LibXml2Tree::load(const std::string &path) {
  m_tree->document.reset(xmlReadFile(path.c_str(), nullptr, XML_PARSE_HUGE));
  if (!m_tree->document)
    return 0;
  int count = 0;
  for (xmlNode *section = xmlDocGetRootElement(m_tree->document.get())->children; section != nullptr;
       section = section->next) {
    if (xmlStrEqual(section->name, BAD_CAST "VorlanModels") != 0)
      count += static_cast<int>(xmlChildElementCount(section));
  }
  return count;
}
