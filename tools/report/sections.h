#pragma once

#include "tools/report/report.h"

// The parts of a report that know what a kind of record is.

/// Writes the items of a collection of the root.
void writeModels(Html &html, const Report &report, const ReportFile &file, const Member &collection);
void writeSchemes(Html &html, const Report &report, const ReportFile &file, const Member &collection);
void writeLinks(Html &html, const Report &report, const ReportFile &file, const Member &collection);
void writeTransceivers(Html &html, const Report &report, const ReportFile &file, const Member &collection);
void writeTable(Html &html, const Report &report, const ReportFile &file, const Member &collection);

/// The items of other files that programs do not get, with the reason.
void writeDropped(Html &html, const Report &report, const ReportFile &file, const Member &collection);
