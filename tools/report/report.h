#pragma once

#include "tools/files.h"
#include "tools/report/html.h"
#include "tools/report/remarks.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A FILE of the command line, as the report shows it.
struct ReportFile {
  std::string id; ///< The beginning of its ids on the page.
  std::string name;
  std::unique_ptr<Loaded> loaded; ///< Null if it could not be read.
  std::string failure;            ///< Why.
};

/// All that a report is made of.
struct Report {
  std::vector<ReportFile> files;
  std::unique_ptr<Remarks> remarks;
  std::vector<std::string> only;    ///< Names of the records that are wanted; empty for all.
  std::vector<std::string> compare; ///< Names of the models whose maps stand side by side.
  std::vector<std::string> gone;    ///< Older files that have no newer one.

  std::map<long long, std::string> channelTypes;           ///< Names, by number.
  std::map<std::string, std::string, std::less<>> anchors; ///< The ids of transceivers, by name.

  bool wants(const Document &document, const Record &record) const;
};

/// The id of a collection of a file, or of what `part` says in it, such as the number of an item.
std::string anchorOf(const ReportFile &file, std::string_view collection, std::string_view part);

/// The last part of a file's name.
std::string fileNameOf(const Document &document);

/// The whole page.
std::string reportPage(const Report &report);

/// The memory map of a model as an SVG file.
std::string memoryMapFile(const Document &document, const Record &model);
