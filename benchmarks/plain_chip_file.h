#pragma once

#include <string>
#include <vector>

// The structs that a program which only needs the texts would use: strings for each record of a chip data file. The
// generator fills them, and the other libraries are measured by reading and writing them.
//
// `visit` names the members in the order of the file: the attributes, then the child elements. A visitor has the
// operations attribute(tag, text), element(tag, text) and list(tag, itemTag, records).

struct PlainMemoryType {
  std::string key, eeWriteTimeRequired, name, flashSectorSizes, description, symbol, flashDriverID;

  template <class Self, class Visitor>
  static void visit(Self &self, Visitor visitor) {
    visitor.attribute("Key", self.key);
    visitor.attribute("EEWriteTimeRequired", self.eeWriteTimeRequired);
    visitor.element("Name", self.name);
    visitor.element("FlashSectorSizes", self.flashSectorSizes);
    visitor.element("Description", self.description);
    visitor.element("Symbol", self.symbol);
    visitor.element("FlashDriverID", self.flashDriverID);
  }
};

struct PlainModel {
  std::string name, externalMemory, triacClkedgeBipolar, ptmSupported, onchipProgrammableSystemImage, sharedClock;
  std::string imageName, key, modelNum, minFWrelease, maxFWrelease, firmwareVersionList;
  std::string romEnd, romEndMinimum, eeStart, eeEnd, extendedEEstart, extendedEEend, ramStart, ramEnd;
  std::string maxClockID, transceiverList, minClockID, extendedRAMSize, bigBufferResetFwMin, manufacturerID;
  std::string uninitEEStart, uninitEEEnd, instructionSet, clockingScheme, family;
  std::vector<PlainMemoryType> nvMemoryTypes;
  std::string capacityModel, programmablePullups;

  template <class Self, class Visitor>
  static void visit(Self &self, Visitor visitor) {
    visitor.attribute("Name", self.name);
    visitor.attribute("ExternalMemory", self.externalMemory);
    visitor.attribute("TriacClkedgeBipolar", self.triacClkedgeBipolar);
    visitor.attribute("PTMSupported", self.ptmSupported);
    visitor.attribute("OnchipProgrammableSystemImage", self.onchipProgrammableSystemImage);
    visitor.attribute("SharedClock", self.sharedClock);
    visitor.element("ImageName", self.imageName);
    visitor.element("Key", self.key);
    visitor.element("ModelNum", self.modelNum);
    visitor.element("minFWrelease", self.minFWrelease);
    visitor.element("maxFWrelease", self.maxFWrelease);
    visitor.element("FirmwareVersionList", self.firmwareVersionList);
    visitor.element("ROMend", self.romEnd);
    visitor.element("ROMendMinimum", self.romEndMinimum);
    visitor.element("EEstart", self.eeStart);
    visitor.element("EEend", self.eeEnd);
    visitor.element("ExtendedEEstart", self.extendedEEstart);
    visitor.element("ExtendedEEend", self.extendedEEend);
    visitor.element("RAMstart", self.ramStart);
    visitor.element("RAMend", self.ramEnd);
    visitor.element("MaxClockID", self.maxClockID);
    visitor.element("TransceiverList", self.transceiverList);
    visitor.element("MinClockID", self.minClockID);
    visitor.element("ExtendedRAMSize", self.extendedRAMSize);
    visitor.element("BigBufferResetFwMin", self.bigBufferResetFwMin);
    visitor.element("ManufacturerID", self.manufacturerID);
    visitor.element("UninitEEStart", self.uninitEEStart);
    visitor.element("UninitEEEnd", self.uninitEEEnd);
    visitor.element("InstructionSet", self.instructionSet);
    visitor.element("ClockingScheme", self.clockingScheme);
    visitor.element("Family", self.family);
    visitor.list("NVMemoryTypes", "NVMemoryType", self.nvMemoryTypes);
    visitor.element("CapacityModel", self.capacityModel);
    visitor.element("ProgrammablePullups", self.programmablePullups);
  }
};

struct PlainContents {
  std::string majorVersion, minorVersion, creationDate, format, content, fileDescription, upgradeStatus;

  template <class Self, class Visitor>
  static void visit(Self &self, Visitor visitor) {
    visitor.attribute("MajorVersion", self.majorVersion);
    visitor.attribute("MinorVersion", self.minorVersion);
    visitor.attribute("CreationDate", self.creationDate);
    visitor.attribute("Format", self.format);
    visitor.attribute("Content", self.content);
    visitor.element("FileDescription", self.fileDescription);
    visitor.element("UpgradeStatus", self.upgradeStatus);
  }
};

struct PlainChipFile {
  PlainContents contents;
  std::vector<PlainModel> models;
};
