#pragma once

/// \file
/// The whole interface of the library.

/// \namespace kestrune
/// What the library offers beyond its classes: numbers of members, a look into records, documents from and to memory,
/// saves that replace the file, and results and failures in words.

/// \namespace kestrune::platform
/// The settings of the platform: code page, debug channel, message boxes.

/// \namespace MSXML
/// The XML document tree.

#include "kestrune/chip/clocking_schemes.h"
#include "kestrune/chip/clocks.h"
#include "kestrune/chip/link_compatibility.h"
#include "kestrune/chip/link_compatible_models.h"
#include "kestrune/chip/nv_memory_types.h"
#include "kestrune/chip/vorlan_model.h"
#include "kestrune/chip/vorlan_models.h"
#include "kestrune/chip/vorlan_typ.h"
#include "kestrune/dom/dom.h"
#include "kestrune/errors/krx_exception.h"
#include "kestrune/errors/result_codes.h"
#include "kestrune/errors/result_text.h"
#include "kestrune/identity/device_classes.h"
#include "kestrune/identity/kestrune_ui.h"
#include "kestrune/identity/name_number_pairs.h"
#include "kestrune/identity/spid_data.h"
#include "kestrune/names/filename.h"
#include "kestrune/names/macro_string.h"
#include "kestrune/names/mb_string.h"
#include "kestrune/platform/code_page.h"
#include "kestrune/platform/com.h"
#include "kestrune/platform/debug_output.h"
#include "kestrune/platform/exceptions.h"
#include "kestrune/platform/message_box.h"
#include "kestrune/transceiver/std_xcvr.h"
#include "kestrune/transceiver/transceiver_parameters.h"
#include "kestrune/transceiver/transceivers.h"
#include "kestrune/xml/member_view.h"
#include "kestrune/xml/record_members.h"
#include "kestrune/xml/replacing_save.h"
#include "kestrune/xml/report.h"
#include "kestrune/xml/xml_collection.h"
#include "kestrune/xml/xml_document.h"
#include "kestrune/xml/xml_dom.h"
#include "kestrune/xml/xml_file_names.h"
#include "kestrune/xml/xml_folder.h"
#include "kestrune/xml/xml_persistent.h"
#include "kestrune/xml/xml_text.h"
