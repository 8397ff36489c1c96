#include "kestrune/identity/device_classes.h"

#include "kestrune/identity/rows.h"
#include "kestrune/platform/c_runtime.h"
#include "kestrune/xml/record_members.h"

struct CTKDeviceClass::Members : RecordMembers<Members, CTKDeviceClass> {
  static constexpr auto rows = std::tuple{
      Row{&CTKDeviceClass::Name, "Name"},
      Row{&CTKDeviceClass::Number, "Number"},
  };
  // The two numbers are derived from the text of `Number` and not stored in the file.
  static constexpr std::size_t unstored = sizeof(NumberMajor) + sizeof(NumberMinor);
};

CTKDeviceClass::CTKDeviceClass() { Members::construct(*this, kestrune::kUnassigned); }

CTKDeviceClass::CTKDeviceClass(const char *name, int number) : CTKDeviceClass() {
  Name = name;
  Number = number;
}

CTKDeviceClass::CTKDeviceClass(const char *tag, const char *nameTag, const char *numberTag) : CTKDeviceClass() {
  PutTag(CString(tag));
  CXMLFolder::operator=(tag);
  rows::setMemberTags(*this, nameTag, numberTag);
}

CTKDeviceClass::CTKDeviceClass(const CTKDeviceClass &rhs) : CTKDeviceClass() { *this = rhs; }
CTKDeviceClass::~CTKDeviceClass() = default;

CTKDeviceClass &CTKDeviceClass::operator=(const CTKDeviceClass &rhs) {
  NumberMajor = rhs.NumberMajor;
  NumberMinor = rhs.NumberMinor;
  return Members::copy(*this, rhs);
}

void CTKDeviceClass::Init() { Members::init(*this); }

long CTKDeviceClass::Load(MSXML::IXMLDOMElement *parent) {
  const long result = CXMLFolder::Load(parent);
  NumberMajor = 0;
  NumberMinor = 0;
  if (result < 0)
    return result;
  kestrune::platform::ScanDecimal(Number, NumberMajor); // stops at the dot
  if (const int dot = Number.Find('.'); dot >= 0)
    kestrune::platform::ScanDecimal(Number.Mid(dot + 1), NumberMinor);
  return result;
}

CString CTKDeviceClass::Key() const { return Name; }
void CTKDeviceClass::pushMembers() { Members::push(*this); }
bool CTKDeviceClass::operator==(const CTKDeviceClass &rhs) const { return rows::equal(*this, rhs); }
bool CTKDeviceClass::operator<(const CTKDeviceClass &rhs) const { return rows::before(*this, rhs); }

struct CTKDeviceClass2::Members : RecordMembers<Members, CTKDeviceClass2, CTKDeviceClass> {
  static constexpr auto rows = std::tuple{
      Row{&CTKDeviceClass2::Category, "Category"},
      Row{&CTKDeviceClass2::Profile, "Profile"},
      Row{&CTKDeviceClass2::Obsolete, "Obsolete"},
  };
};

CTKDeviceClass2::CTKDeviceClass2() { Members::construct(*this); }

CTKDeviceClass2::CTKDeviceClass2(const char *name, int number) : CTKDeviceClass(name, number) {
  Members::construct(*this);
}

CTKDeviceClass2::CTKDeviceClass2(const char *tag, const char *nameTag, const char *numberTag) : CTKDeviceClass2() {
  PutTag(CString(tag));
  CXMLFolder::operator=(tag);
  rows::setMemberTags(*this, nameTag, numberTag);
}

CTKDeviceClass2::CTKDeviceClass2(const CTKDeviceClass2 &rhs) : CTKDeviceClass2() { *this = rhs; }
CTKDeviceClass2::~CTKDeviceClass2() = default;

CTKDeviceClass2 &CTKDeviceClass2::operator=(const CTKDeviceClass2 &rhs) { return Members::copy(*this, rhs); }
void CTKDeviceClass2::Init() { Members::init(*this); }
void CTKDeviceClass2::pushMembers() { Members::push(*this); }

CTKDeviceClasses::CTKDeviceClasses() { CTKDeviceClasses::Init(); }
CTKDeviceClasses::CTKDeviceClasses(const CTKDeviceClasses &rhs) : CTKDeviceClasses() { *this = rhs; }
CTKDeviceClasses::~CTKDeviceClasses() = default;

CTKDeviceClasses &CTKDeviceClasses::operator=(const CTKDeviceClasses &rhs) {
  assignCollection<CTKDeviceClass>(rhs);
  return *this;
}

void CTKDeviceClasses::Init() {
  setTags(kestrune::kUnassigned, kestrune::kUnassigned, kestrune::kUnassigned);
  pushMembers();
}

CTKDeviceClass *CTKDeviceClasses::Add(const char *name, int number) {
  return rows::withNumber(addKeyed<CTKDeviceClass>(name, &CTKDeviceClass::Name), number);
}

CTKDeviceClass *CTKDeviceClasses::operator[](int index) {
  return static_cast<CTKDeviceClass *>(CXMLCollectionFolder::operator[](index));
}

CTKDeviceClass *CTKDeviceClasses::Find(const char *name) { return static_cast<CTKDeviceClass *>(FindItem(name)); }

CTKDeviceClass *CTKDeviceClasses::FindByNumber(int major, int minor) {
  return findFirst<CTKDeviceClass>(
      [=](const CTKDeviceClass &item) { return item.NumberMajor == major && item.NumberMinor == minor; });
}

CXMLFolder *CTKDeviceClasses::NewFolder() { return rows::make<CTKDeviceClass>(m_itemTag); }
kestrune::ItemIterator<CTKDeviceClass> CTKDeviceClasses::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CTKDeviceClass> CTKDeviceClasses::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CTKDeviceClass> CTKDeviceClasses::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CTKDeviceClass> CTKDeviceClasses::end() const { return {m_items, m_items.size()}; }

CTKDeviceClasses2::CTKDeviceClasses2() = default;
CTKDeviceClasses2::CTKDeviceClasses2(const CTKDeviceClasses2 &rhs) : CTKDeviceClasses2() { *this = rhs; }
CTKDeviceClasses2::~CTKDeviceClasses2() = default;

CTKDeviceClasses2 &CTKDeviceClasses2::operator=(const CTKDeviceClasses2 &rhs) {
  assignCollection<CTKDeviceClass2>(rhs);
  return *this;
}

CTKDeviceClass2 *CTKDeviceClasses2::Add(const char *name, int number) {
  return static_cast<CTKDeviceClass2 *>(CTKDeviceClasses::Add(name, number));
}

CTKDeviceClass2 *CTKDeviceClasses2::operator[](int index) {
  return static_cast<CTKDeviceClass2 *>(CXMLCollectionFolder::operator[](index));
}

CTKDeviceClass2 *CTKDeviceClasses2::Find(const char *name) { return static_cast<CTKDeviceClass2 *>(FindItem(name)); }

CTKDeviceClass2 *CTKDeviceClasses2::FindByNumber(int major, int minor) {
  return static_cast<CTKDeviceClass2 *>(CTKDeviceClasses::FindByNumber(major, minor));
}

CXMLFolder *CTKDeviceClasses2::NewFolder() { return rows::make<CTKDeviceClass2>(m_itemTag); }
kestrune::ItemIterator<CTKDeviceClass2> CTKDeviceClasses2::begin() { return {m_items, 0}; }
kestrune::ItemIterator<CTKDeviceClass2> CTKDeviceClasses2::end() { return {m_items, m_items.size()}; }
kestrune::ItemIterator<const CTKDeviceClass2> CTKDeviceClasses2::begin() const { return {m_items, 0}; }
kestrune::ItemIterator<const CTKDeviceClass2> CTKDeviceClasses2::end() const { return {m_items, m_items.size()}; }
