#include "tools/meanings.h"

#include <map>
#include <utility>

namespace {

using enum Reading;

// "May be Unassigned" is true for the texts that no program turns into a number or a truth value, and for the two
// members whose readers expect it.
constexpr Meaning kMeanings[] = {
    {"Contents", "MajorVersion", kInt, false, "Major version of the file, set by whoever keeps it."},
    {"Contents", "MinorVersion", kInt, false, "Minor version of the file, set by whoever keeps it."},
    {"Contents", "CreationDate", kInt, false,
     "When the document was made, in seconds since 1970, UTC; no save changes it."},
    {"Contents", "Format", kInt, false,
     "Number of the format; it does not tell the version, and loading passes it over."},
    {"Contents", "Content", kInt, false, "Number of the kind of content; loading passes it over."},
    {"Contents", "FileDescription", kText, true, "What the file is for, in a few words."},
    {"Contents", "UpgradeStatus", kUnsigned, false, "How far an upgrade of the file has come, as a number."},

    {"VorlanTyp", "Contents", kText, true, "The header of the file."},
    {"VorlanTyp", "VorlanModels", kText, true, "The chip models."},
    {"VorlanTyp", "LinkCompatibleModels", kText, true, "Which models can be linked with which others."},
    {"VorlanTyp", "ClockingSchemes", kText, true, "The clocking schemes that the models refer to."},

    {"VorlanModel", "Name", kText, true,
     "Name of the model; loading compares it with the Key of the models before it."},
    {"VorlanModel", "ExternalMemory", kTruth, false, "Whether the chip uses external memory: TRUE or FALSE."},
    {"VorlanModel", "TriacClkedgeBipolar", kTruth, false, "Whether the triac clock edge is bipolar: TRUE or FALSE."},
    {"VorlanModel", "PTMSupported", kTruth, false, "Whether PTM is supported: TRUE or FALSE."},
    {"VorlanModel", "ImageName", kText, true, "Name of the system image."},
    {"VorlanModel", "Key", kText, true, "The text by which programs find the model."},
    {"VorlanModel", "ModelNum", kInt, false,
     "Number of the model, which the link table refers to; a leading 0 makes it octal."},
    {"VorlanModel", "minFWrelease", kInt, false, "Lowest firmware release."},
    {"VorlanModel", "maxFWrelease", kInt, false, "Highest firmware release."},
    {"VorlanModel", "FirmwareVersionList", kVersions, true, "The firmware versions, separated by semicolons."},
    {"VorlanModel", "ROMend", kHex, false, "Last address of the ROM, such as 0x7FFF."},
    {"VorlanModel", "ROMendMinimum", kHex, false, "Lowest end that the ROM may be given."},
    {"VorlanModel", "EEstart", kHex, false, "First address of the EEPROM."},
    {"VorlanModel", "EEend", kHex, false, "Last address of the EEPROM."},
    {"VorlanModel", "ExtendedEEstart", kHex, false, "First address of the extended EEPROM; 0x0 to 0x0 is none."},
    {"VorlanModel", "ExtendedEEend", kHex, false, "Last address of the extended EEPROM."},
    {"VorlanModel", "RAMstart", kHex, false, "First address of the RAM."},
    {"VorlanModel", "RAMend", kHex, false, "Last address of the RAM."},
    {"VorlanModel", "MaxClockID", kInt, false, "Highest clock id."},
    {"VorlanModel", "TransceiverList", kNames, true,
     "Names of the transceivers of the model, separated by semicolons."},
    {"VorlanModel", "OnchipProgrammableSystemImage", kTruth, false,
     "Whether the system image on the chip can be programmed: TRUE or FALSE."},
    {"VorlanModel", "SharedClock", kTruth, false, "Whether the clock is shared: TRUE or FALSE."},
    {"VorlanModel", "MinClockID", kInt, false, "Lowest clock id."},
    {"VorlanModel", "ExtendedRAMSize", kHex, false, "Size of the extended RAM in bytes."},
    {"VorlanModel", "BigBufferResetFwMin", kInt, false, "Lowest firmware release with the big buffer reset."},
    {"VorlanModel", "ManufacturerID", kInt, false, "Number of the manufacturer in the identity data; -1 is none."},
    {"VorlanModel", "UninitEEStart", kHex, false, "First address of the uninitialised EEPROM; 0x0 to 0x0 is none."},
    {"VorlanModel", "UninitEEEnd", kHex, false, "Last address of the uninitialised EEPROM."},
    {"VorlanModel", "InstructionSet", kInt, false, "Number of the instruction set."},
    {"VorlanModel", "ClockingScheme", kInt, false, "Id of the model's clocking scheme."},
    {"VorlanModel", "Family", kUnsigned, false, "Number of the chip family."},
    {"VorlanModel", "NVMemoryTypes", kText, true, "The non-volatile memories that the model can work with."},
    {"VorlanModel", "CapacityModel", kUnsigned, false, "Number of the capacity model."},
    {"VorlanModel", "ProgrammablePullups", kHexUnsigned, false, "The pull-ups that can be programmed, a bit for each."},

    {"NVMemoryType", "Key", kInt, false, "Number of the memory, and its key in the model."},
    {"NVMemoryType", "Name", kText, true, "Name of the memory."},
    {"NVMemoryType", "FlashSectorSizes", kText, true, "Sizes of the flash sectors, one text."},
    {"NVMemoryType", "EEWriteTimeRequired", kTruth, false, "Whether a write time has to be kept: TRUE or FALSE."},
    {"NVMemoryType", "Description", kText, true, "What people read about the memory."},
    {"NVMemoryType", "Symbol", kText, true, "Symbol of the memory in programs."},
    {"NVMemoryType", "FlashDriverID", kInt, false, "Number of the flash driver; 0 is none."},

    {"LinkCompatibleModel", "Name", kModelNumber, false,
     "Number of a model in decimal, without blank, 0x or leading 0."},
    {"LinkCompatibleModel", "LinkCompatibleList", kModelNumbers, true,
     "Numbers of the models it can be linked with, in decimal, separated by ; or , without blanks."},

    {"ClockingScheme", "Id", kInt, false, "Number by which models refer to the scheme."},
    {"ClockingScheme", "Description", kText, true, "What people read about the scheme."},
    {"ClockingScheme", "Algorithm", kInt, false, "Number of the algorithm; programs know what it means."},
    {"ClockingScheme", "Clocks", kText, true, "The clock rates of the scheme."},

    {"Clock", "Value", kDouble, false, "Clock rate in kilohertz."},
    {"Clock", "Display", kText, true, "The rate as people read it, such as 10 MHz."},
    {"Clock", "Description", kText, true, "What people read about the rate."},
    {"Clock", "CycleDivider", kDouble, false, "By how much the rate is divided to give the cycle."},
    {"Clock", "Encoding", kText, true, "Code of the rate in the chip."},
    {"Clock", "Multipliers", kText, true, "The multipliers that the rate allows."},
    {"Clock", "Uart", kTruthWord, false, "Whether the UART works at this rate: True or False."},
    {"Clock", "Oscillators", kText, true, "The oscillators for the rate; without any, programs use the default one."},

    {"Multiplier", "Value", kDouble, false, "By how much the clock rate is multiplied."},
    {"Multiplier", "Display", kText, true, "The multiplier as people read it, such as 1/2."},
    {"Multiplier", "Description", kText, true, "What people read about the multiplier."},
    {"Multiplier", "Encoding", kText, true, "Code of the multiplier in the chip."},
    {"Multiplier", "Cpu", kInt, false, "Setting for the processor, a number."},
    {"Multiplier", "Mac", kInt, false, "Setting for the network part, a number."},

    {"Oscillator", "Value", kDecimal, false, "Number of the oscillator, in decimal."},
    {"Oscillator", "Encoding", kDecimal, false, "Code of the oscillator in the chip, in decimal."},
    {"Oscillator", "Display", kText, true, "The oscillator as people read it."},

    {"StdXcvr", "Contents", kText, true, "The header of the file."},
    {"StdXcvr", "Transceivers", kText, true, "The transceivers."},

    {"Transceiver", "TevroskApproved", kTruth, false,
     "Whether it is approved under the interoperability brand: TRUE or FALSE."},
    {"Transceiver", "Name", kText, true, "Name of the transceiver, its key."},
    {"Transceiver", "std_id", kInt, false, "Number by which programs find the transceiver."},
    {"Transceiver", "support_level", kText, true, "Level of support."},
    {"Transceiver", "ChannelTypeNumber", kInt, false, "Number of the channel type in the identity data."},
    {"Transceiver", "std_xcvr_id", kInt, false, "A second number, by which nothing is searched."},
    {"Transceiver", "UsesVorlanComPort", kTruth, false,
     "Whether it uses the chip's communications port: TRUE or FALSE."},
    {"Transceiver", "Timing", kText, true, "The timing parameters."},
    {"Transceiver", "Channel", kText, true, "The channel parameters."},
    {"Transceiver", "ModeSpec", kText, true, "The mode parameters."},
    {"Transceiver", "SignalStrengthIndicator", kTruth, false,
     "Whether it has a signal strength indicator: TRUE or FALSE."},
    {"Transceiver", "SupportAlternateClockRates", kTruth, false,
     "Whether it supports alternate clock rates: TRUE or FALSE."},
    {"Transceiver", "SchedulerMode", kDecimal, true, "Scheduler mode, a decimal number; Unassigned counts as 0."},

    {"Timing", "rcv_start_delay", kInt, false, "Delay at the start of receiving."},
    {"Timing", "rcv_end_delay", kInt, false, "Delay at the end of receiving."},
    {"Timing", "indeterm_time", kInt, false, "Indeterminate time."},
    {"Timing", "min_interpkt", kInt, false, "Least time between packets."},
    {"Timing", "preamble", kInt, false, "Length of the preamble."},
    {"Timing", "turnaround", kInt, false, "Turnaround time."},
    {"Timing", "missed_pream", kInt, false, "Missed preamble."},
    {"Timing", "packet_qual", kInt, false, "Packet qualification."},

    {"Channel", "comm_mode", kInt, false, "Communication mode."},
    {"Channel", "osc_accuracy", kInt, false, "Accuracy of the oscillator."},
    {"Channel", "osc_wakeup", kInt, false, "Wake-up time of the oscillator."},
    {"Channel", "comm_rate", kInt, false, "Communication rate."},
    {"Channel", "max_priority", kInt, false, "Highest priority."},
    {"Channel", "default_priority_slots", kInt, false, "Default number of priority slots."},
    {"Channel", "min_clockID", kInt, false, "Lowest clock id."},
    {"Channel", "max_clockID", kInt, false, "Highest clock id."},
    {"Channel", "avg_pkt_size", kInt, false, "Average size of a packet."},
    {"Channel", "flags", kHex, false, "Flags, such as 0x10."},

    {"ModeSpec", "chan_bit_rate", kInt, false, "Bit rate of the channel."},
    {"ModeSpec", "alt_rate_tag", kInt, false, "Tag of the alternate rate."},
    {"ModeSpec", "xcvr_cntrls_pream", kInt, false, "Whether the transceiver controls the preamble: 1 or 0."},
    {"ModeSpec", "wakeup_pin_dir", kInt, false, "Direction of the wake-up pin."},
    {"ModeSpec", "xcvr_gp_data", kHexDigits, false, "General-purpose data: 0x and hexadecimal digits."},
    {"ModeSpec", "allow_node_override", kInt, false, "Whether a node may override the mode: 1 or 0."},
    {"ModeSpec", "standard_threshold", kTruthWord, false, "Whether the threshold is the standard one: TRUE or FALSE."},

    {"SPIDData", "Contents", kText, true, "The header of the file."},
    {"SPIDData", "ManufacturerIDs", kText, true, "The manufacturers."},
    {"SPIDData", "DeviceClasses", kText, true, "The device classes."},
    {"SPIDData", "DeviceSubClasses", kText, true, "The device subclasses."},
    {"SPIDData", "ChannelTypes", kText, true, "The channel types."},

    {"ManufacturerID", "Name", kText, true, "Name of the manufacturer, its key."},
    {"ManufacturerID", "Number", kInt, false, "Number of the manufacturer."},
    {"DeviceClass", "Name", kText, true, "Name of the device class, its key."},
    {"DeviceClass", "Number", kDeviceNumber, false, "Number of the device class, as major.minor."},
    {"DeviceClass", "Category", kText, true, "Category of the device class."},
    {"DeviceClass", "Profile", kText, true, "Profile of the device class."},
    {"DeviceClass", "Obsolete", kTruth, false, "Whether the device class is obsolete: TRUE or FALSE."},
    {"DeviceSubClass", "Name", kText, true, "Name of the device subclass, its key."},
    {"DeviceSubClass", "Number", kInt, false, "Number of the device subclass."},
    {"ChannelType", "Name", kText, true, "Name of the channel type, its key."},
    {"ChannelType", "Number", kInt, false, "Number of the channel type."},

    {"KestruneUI", "Contents", kText, true, "The header of the file."},
    {"KestruneUI", "UIInfo", kText, true, "What the user interface offers."},
    {"UIInfo", "ClockSpeeds", kText, true, "The clock speeds that are offered, separated by semicolons."},
    {nullptr, nullptr, kText, true, nullptr},
};

} // namespace

const Meaning *allMeanings() { return kMeanings; }

const Meaning *findMeaning(std::string_view record, std::string_view member) {
  static const auto index = [] {
    std::map<std::pair<std::string_view, std::string_view>, const Meaning *> rows;
    for (const Meaning *row = kMeanings; row->record != nullptr; ++row)
      rows.emplace(std::pair(row->record, row->member), row);
    return rows;
  }();
  const auto found = index.find({record, member});
  return found != index.end() ? found->second : nullptr;
}
