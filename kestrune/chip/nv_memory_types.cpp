#include "kestrune/chip/nv_memory_types.h"

#include "kestrune/xml/number_text.h"
#include "kestrune/xml/record_members.h"

struct CNVMemoryType::Members : RecordMembers<Members, CNVMemoryType> {
  static constexpr auto rows = std::tuple{
      Row{&CNVMemoryType::m_key, "Key"},
      Row{&CNVMemoryType::m_name, "Name"},
      Row{&CNVMemoryType::FlashSectorSizes, "FlashSectorSizes"},
      Row{&CNVMemoryType::EEWriteTimeRequired, "EEWriteTimeRequired"},
      Row{&CNVMemoryType::m_description, "Description"},
      Row{&CNVMemoryType::m_symbol, "Symbol"},
      Row{&CNVMemoryType::m_flashDriverID, "FlashDriverID"},
  };
};

CNVMemoryType::CNVMemoryType() { Members::construct(*this, "NVMemoryType"); }

CNVMemoryType::CNVMemoryType(const char *key, const char *name) {
  PutTag(CString("NVMemoryType"));
  CNVMemoryType::Init();
  m_key = key;
  m_name = name;
  FlashSectorSizes = "0";
  EEWriteTimeRequired = false;
  m_description = "";
  m_symbol = "";
  m_flashDriverID = "";
}

CNVMemoryType::CNVMemoryType(const CNVMemoryType &rhs) : CNVMemoryType() { *this = rhs; }
CNVMemoryType::~CNVMemoryType() = default;

CNVMemoryType &CNVMemoryType::operator=(const CNVMemoryType &rhs) { return Members::copy(*this, rhs); }
void CNVMemoryType::Init() { Members::init(*this); }
CString CNVMemoryType::Key() const { return m_key; }
void CNVMemoryType::pushMembers() { Members::push(*this); }
int CNVMemoryType::DriverKey() const { return ParseInt(m_key); }
const char *CNVMemoryType::Name() const { return m_name; }
const char *CNVMemoryType::Description() const { return m_description; }
const char *CNVMemoryType::Symbol() const { return m_symbol; }
int CNVMemoryType::FlashDriverID() const { return ParseInt(m_flashDriverID); }

CNVMemoryTypes::CNVMemoryTypes() {
  CXMLFolder::operator=("NVMemoryTypes");
  CNVMemoryTypes::Init();
}

CNVMemoryTypes::CNVMemoryTypes(const CNVMemoryTypes &rhs) : CNVMemoryTypes() { *this = rhs; }
CNVMemoryTypes::~CNVMemoryTypes() = default;

CNVMemoryTypes &CNVMemoryTypes::operator=(const CNVMemoryTypes &rhs) {
  assignCollection<CNVMemoryType>(rhs);
  return *this;
}

void CNVMemoryTypes::Init() {
  setTags("NVMemoryTypes", "NVMemoryType", "Key");
  pushMembers();
}

long CNVMemoryTypes::Load(MSXML::IXMLDOMElement *parent) { return CXMLCollectionFolder::Load(parent); }
void CNVMemoryTypes::pushMembers() { m_members.clear(); }
CXMLFolder *CNVMemoryTypes::NewFolder() { return new CNVMemoryType; }
kestrune::ItemIterator<CNVMemoryType> CNVMemoryTypes::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CNVMemoryType> CNVMemoryTypes::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CNVMemoryType> CNVMemoryTypes::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CNVMemoryType> CNVMemoryTypes::end() const { return {m_items, m_items.size()}; }

CNVMemoryType *CNVMemoryTypes::Add(const char *key, const char *name) {
  auto *const item = addKeyed<CNVMemoryType>(key, &CNVMemoryType::m_key);
  if (item != nullptr && name != nullptr)
    item->m_name = name;
  return item;
}

CNVMemoryType *CNVMemoryTypes::operator[](int index) {
  return static_cast<CNVMemoryType *>(CXMLCollectionFolder::operator[](index));
}

CNVMemoryType *CNVMemoryTypes::Find(const char *key) { return static_cast<CNVMemoryType *>(FindItem(key)); }
