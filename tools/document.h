#pragma once

#include "tools/outline.h"
#include "tools/shape.h"
#include "tools/source.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// A data file as the commands see it: the library's own document with, for each record and each member of it, the place
// in the file.

class Document;

/// A record of a document: the root, a folder or an item of a collection. Valid as long as the document, and as long as
/// no item is added or deleted.
struct Record {
  CXMLFolder *folder = nullptr;
  const RecordShape *shape = nullptr;
  Outline::Index element = Outline::kNone;    ///< Where it stands; kNone for a folder that the file lacks.
  std::string address;                        ///< The road to it, "" for the root; see address.h.
  CXMLCollectionFolder *collection = nullptr; ///< The collection that it is an item of, else null.
};

/// A member of a record.
struct Member {
  CXMLPersistent *value = nullptr; ///< With its text.
  const MemberShape *shape = nullptr;
  Outline::Index element = Outline::kNone; ///< The element that it is read from, for an attribute that of the record;
                                           ///< kNone if the file lacks the member, so that it has its default.
  CXMLFolder *folder = nullptr;            ///< The folder or collection, else null.
  CXMLCollectionFolder *collection = nullptr; ///< The collection, else null.

  bool isInFile() const { return element != Outline::kNone; }
  std::string_view text() const { return value->View(); }
};

/// An element that a collection did not take as an item.
struct Dropped {
  enum class Reason { kNoKey, kEmptyKey, kKeyTwice };
  Outline::Index element;
  Reason reason;
  Outline::Index first; ///< For a key that stands twice: the item that has it. Otherwise kNone.
};

/// A file that was read, once.
class Document {
public:
  /// Reads bytes as the class of a format version; 0 is the newest. Never fails: failure() says what is wrong.
  explicit Document(Source source, int version = 0);
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;
  ~Document();

  const std::string &name() const { return m_source.name; }
  const std::string &path() const { return m_source.path; }
  const std::string &bytes() const { return m_source.bytes; }
  const Outline &outline() const { return m_outline; }

  /// The kind of file; null where the root is that of none, or where the text is not well-formed.
  const Kind *kind() const { return m_kind; }
  /// The library's document; null without a kind.
  CXMLTopLevelFolder *folder() const { return m_folder.get(); }
  /// What the load answered.
  long result() const { return m_result; }
  /// Why the file cannot be used, as "FILE:LINE:COLUMN: reason"; empty if all of it was loaded.
  const std::string &failure() const { return m_failure; }

  /// The record at the top.
  Record root() const;
  /// The members of a record, in the order of the file, whether they stand in it or not.
  std::vector<Member> members(const Record &record) const;
  /// The member of a record with that tag; its shape is null if there is none.
  Member member(const Record &record, std::string_view tag) const;
  /// The record that a member is, if it is a folder and no collection.
  Record folderOf(const Record &record, const Member &member) const;
  /// The items of a member that is a collection. Adds to `dropped`, if there is one, what the collection did not take.
  std::vector<Record> items(const Record &record, const Member &member, std::vector<Dropped> *dropped = nullptr) const;

  /// Calls `visit` with the root and each record inside it, in the order of a saved file.
  void forEachRecord(const std::function<void(const Record &)> &visit) const;
  /// Calls `visit` with each member of the root and of each record inside it, in the order of a saved file: what is in
  /// a folder or collection follows it.
  void forEachMember(const std::function<void(const Record &, const Member &)> &visit) const;
  /// The same, from a record on.
  void forEachMember(const Record &top, const std::function<void(const Record &, const Member &)> &visit) const;

  /// Where the text of a member stands, and a folder its element. Only for what is in the file.
  Position place(const Member &member) const;

  /// The format version that the content of the file needs: the highest one of any member that stands in it.
  int versionNeeded() const;

private:
  void load(int version);

  Source m_source;
  Outline m_outline;
  const Kind *m_kind = nullptr;
  std::unique_ptr<CXMLTopLevelFolder> m_folder;
  long m_result = 0;
  std::string m_failure;
};

/// What went wrong in the last load or save of a document, which failed, under that name of its file: the first finding
/// of its report, and how many more there are.
std::string failureText(const std::string &name, const CXMLFolder &folder);

/// Reads a file, of which everything has to be loaded. Throws CouldNotWork.
std::unique_ptr<Document> openDocument(const std::string &file, const std::string &inputName = {}, int version = 0);

/// The text of a key or name between slashes, as an address has it: `/` and `\` get a `\` before them.
std::string addressStep(std::string_view text);

/// A name by which people know a record: its Name, or else its key.
std::string nameOf(const Document &document, const Record &record);
