#pragma once

#include "kestrune/xml/report.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// How loads and saves write their reports. Nothing is allocated until there is something to report, and nothing here
// throws: without memory for it, a report is shorter.

namespace kestrune {

namespace platform {
class InputFile;
} // namespace platform

/// A load or save in progress on this thread. What it finds becomes the report of its folder at the end. The finds of a
/// load within it, such as that of an add-on file, are its own too.
class Reporting {
public:
  /// `file` is the path in drive form, or null where it is not known yet. The folder has no report from here on.
  explicit Reporting(CXMLFolder &folder, const char *file = nullptr) noexcept;
  Reporting(const Reporting &) = delete;
  Reporting &operator=(const Reporting &) = delete;
  ~Reporting();

  /// Adds a finding, with the words of the result where `reason` is empty. Returns `result`.
  long add(long result, const char *reason = "", long line = 0, long column = 0) noexcept;
  /// Adds that the file cannot be opened or read, with the system's words. Returns `result`.
  long addUnreadable(long result, const char *file) noexcept;
  /// Adds that the root element has that name. Returns KRX_E_WRONG_ROOT_TAG.
  long addWrongRoot(const CString &found, const CString &expected) noexcept;
  /// Adds that a document cannot be saved, and which text of it. Returns KRX_E_SAVE_FAILED.
  long addUnsaved(const _com_error &error) noexcept;
  /// Adds, to the load in progress, that the item at `index` of `elements` was left out because its `key`, which its
  /// attribute `keyName` has, is empty or used by an earlier one; or `isTaken`, which is the key of one in another way.
  static void leaveOut(const CString &keyName, const MSXML::IXMLDOMNodeList &elements, long index, const CString &key,
                       bool isTaken) noexcept;
  /// Adds, to what the load in progress has found last, in another file, that nothing of that file is used.
  static void passOver() noexcept;
  /// Gives what was found last another reason.
  void explain(const std::string &reason) noexcept;
  /// Adds `result` if it is a failure about which there is nothing yet. Returns it.
  long complete(long result) noexcept;

  /// Finds the lines of the elements that are reported on in what was read, which is read once more for that. @{
  void findPlacesInFile() noexcept;
  void findPlacesInText(std::string_view text) noexcept;
  ///@}

  static std::vector<Finding> of(const CXMLFolder &folder);
  static void forget(CXMLFolder &folder) noexcept;

private:
  static constexpr std::size_t kMostPlaces = 100;

  /// A finding that waits for its place, and for that of an earlier element, or 0, that its reason names.
  struct Place {
    std::size_t finding;
    std::uint32_t element;
    std::uint32_t earlier;
  };

  void addLeftOut(const CString &keyName, MSXML::IXMLDOMNodeList elements, long index, const CString &key,
                  bool isTaken);
  void findPlacesIn(platform::InputFile &file);

  CXMLFolder &m_folder;
  const char *m_file;
  Reporting *m_outer;
  std::vector<Finding> m_findings;
  std::vector<Place> m_places;
};

} // namespace kestrune
