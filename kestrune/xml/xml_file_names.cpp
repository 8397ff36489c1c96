#include "kestrune/xml/xml_file_names.h"

#include "kestrune/xml/record_members.h"

struct CXMLFileName::Members : RecordMembers<Members, CXMLFileName> {
  static constexpr auto rows = std::tuple{
      Row{&CXMLFileName::Name, "Name"},
      Row{&CXMLFileName::OptionFlags, "OptionFlags", "0x0"},
  };
};

CXMLFileName::CXMLFileName() : CXMLFileName("FileName", "Name") {}

CXMLFileName::CXMLFileName(const char *tag, const char *keyName) {
  PutTag(CString(tag));
  Members::initFields(*this);
  Name.PutTag(CString(keyName));
}

CXMLFileName::CXMLFileName(const CXMLFileName &rhs) : CXMLFileName() { *this = rhs; }
CXMLFileName::~CXMLFileName() = default;

CXMLFileName &CXMLFileName::operator=(const CXMLFileName &rhs) {
  CXMLFolder::operator=(rhs);
  return Members::copy(*this, rhs);
}

CString CXMLFileName::Key() const { return Name; }
void CXMLFileName::pushMembers() { Members::push(*this); }

CXMLFileNames::CXMLFileNames() {
  PutTag(CString("PFXMLFileNames"));
  CXMLFolder::operator=("PFXMLFileNames");
  CXMLFileNames::Init();
}

CXMLFileNames::CXMLFileNames(const CXMLFileNames &rhs) : CXMLFileNames() { *this = rhs; }
CXMLFileNames::~CXMLFileNames() = default;

CXMLFileNames &CXMLFileNames::operator=(const CXMLFileNames &rhs) {
  assignCollection<CXMLFileName>(rhs);
  return *this;
}

void CXMLFileNames::Init() { setTags("PFXMLFileNames", "PFXMLFileName", "Name"); }
void CXMLFileNames::pushMembers() { m_members.clear(); }
CXMLFolder *CXMLFileNames::NewFolder() { return new CXMLFileName; }
kestrune::ItemIterator<CXMLFileName> CXMLFileNames::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CXMLFileName> CXMLFileNames::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CXMLFileName> CXMLFileNames::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CXMLFileName> CXMLFileNames::end() const { return {m_items, m_items.size()}; }
CXMLFileName *CXMLFileNames::Add(const char *key) { return addKeyed<CXMLFileName>(key, &CXMLFileName::Name); }
CXMLFileName *CXMLFileNames::Find(const char *key) { return static_cast<CXMLFileName *>(FindItem(key)); }

CXMLFileName *CXMLFileNames::operator[](int index) {
  return static_cast<CXMLFileName *>(CXMLCollectionFolder::operator[](index));
}
