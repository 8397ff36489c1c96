#include "benchmarks/chip_file_generator.h"

#include "benchmarks/plain_chip_file.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <random>
#include <string_view>

namespace {

/// The pseudo-random choices for one model, which depend only on its number.
class Choices {
public:
  explicit Choices(int number) : m_random(static_cast<std::uint32_t>(number) + 1U) { m_random.discard(3); }

  int below(int limit) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(limit)); }
  std::string truth() { return below(3) == 0 ? "TRUE" : "FALSE"; }

  template <std::size_t count>
  std::string one(const std::array<const char *, count> &texts) {
    return texts[static_cast<std::size_t>(below(static_cast<int>(count)))];
  }

private:
  std::minstd_rand m_random;
};

constexpr std::array kSeries = {"1802", "2202", "2212", "3410", "3420-E", "5120", "5130-X", "6050"};
constexpr std::array kTransceivers = {"Difrane 19",   "Difrane 38",     "Cordane 16",     "Cordane 64",
                                      "Cordane 64-B", "Ombrell OT-218", "Ombrell OT-220", "Generic single-ended"};
constexpr std::array kMemoryNames = {"On-chip EEPROM", "Serial flash, 64 KB", "Parallel flash", "FRAM, 32 KB"};
constexpr std::array kSectorSizes = {"0", "128", "64,64,64,64", "16384,8192,8192,32768,65536,65536,65536"};
constexpr std::array kMemoryDescriptions = {
    "512 bytes, page of 16, write time < 10 ms",
    "Sector erase & byte programming, 100,000 cycles",
    "Ferroelectric, no write time",
    "Boot block at the top; range \xE2\x88\x92"
    "40 \xC2\xB0"
    "C to +85 \xC2\xB0"
    "C",
};
constexpr std::array kSymbols = {"NV_ONCHIP_EE", "NV_SERIAL_FLASH", "NV_PARALLEL_FLASH", "NV_FRAM"};

std::string numbered(const char *format, int number) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), format, number);
  return text.data();
}

std::string address(int value) { return numbered("0x%04X", value); }

std::string joined(Choices &choices, int count) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    if (i != 0)
      list += ';';
    list += choices.one(kTransceivers);
  }
  return list;
}

PlainMemoryType makeMemoryType(Choices &choices, int key) {
  PlainMemoryType memory;
  memory.key = std::to_string(key);
  memory.eeWriteTimeRequired = choices.truth();
  memory.name = choices.one(kMemoryNames);
  memory.flashSectorSizes = choices.one(kSectorSizes);
  memory.description = choices.one(kMemoryDescriptions);
  memory.symbol = choices.one(kSymbols);
  memory.flashDriverID = std::to_string(choices.below(16));
  return memory;
}

PlainModel makeModel(int number) {
  Choices choices(number);
  const std::string series = choices.one(kSeries);
  const int firmware = 2 + choices.below(18);
  const int romEnd = 0x1FFF + 0x1000 * choices.below(12);
  const int eeStart = 0xE000 + 0x100 * choices.below(16);
  const int eeEnd = eeStart + 0x1FF;
  const int ramStart = 0xD000 + 0x100 * choices.below(8);

  PlainModel model;
  model.name = "Vorlan " + series + numbered("-%06d", number);
  model.externalMemory = choices.truth();
  model.triacClkedgeBipolar = choices.truth();
  model.ptmSupported = choices.truth();
  model.onchipProgrammableSystemImage = choices.truth();
  model.sharedClock = choices.truth();
  model.imageName = "V" + series + numbered("_%06d", number);
  model.key = "KVO-" + series + numbered("-%06d", number);
  model.modelNum = numbered("%03o", choices.below(512));
  model.minFWrelease = std::to_string(firmware);
  model.maxFWrelease = std::to_string(firmware + 2);
  model.firmwareVersionList = model.minFWrelease + ";" + std::to_string(firmware + 1) + ";" + model.maxFWrelease;
  model.romEnd = address(romEnd);
  model.romEndMinimum = address(romEnd - 0x1000);
  model.eeStart = address(eeStart);
  model.eeEnd = address(eeEnd);
  model.extendedEEstart = choices.below(2) == 0 ? "0x0" : address(0x8000);
  model.extendedEEend = model.extendedEEstart == "0x0" ? "0x0" : address(0xBFFF);
  model.ramStart = address(ramStart);
  model.ramEnd = address(ramStart + 0x7FF);
  model.maxClockID = std::to_string(5 + choices.below(10));
  model.transceiverList = joined(choices, 2 + choices.below(6));
  model.minClockID = std::to_string(1 + choices.below(4));
  model.extendedRAMSize = address(0x400 * choices.below(8));
  model.bigBufferResetFwMin = std::to_string(choices.below(20));
  model.manufacturerID = choices.below(4) == 0 ? "-1" : std::to_string(choices.below(10));
  model.uninitEEStart = address(eeEnd - 0x1F);
  model.uninitEEEnd = address(eeEnd);
  model.instructionSet = std::to_string(1 + choices.below(3));
  model.clockingScheme = std::to_string(1 + choices.below(4));
  model.family = choices.below(5) == 0 ? "03410" : series.substr(0, 4);
  for (int key = 1; key <= 2; ++key)
    model.nvMemoryTypes.push_back(makeMemoryType(choices, key));
  model.capacityModel = std::to_string(choices.below(4));
  model.programmablePullups = numbered("0x%X", choices.below(256));
  return model;
}

PlainContents makeContents() { return {"1", "1", "1376294411", "1", "1", "Invented models, for measuring", "0"}; }

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '&')
      result += "&amp;";
    else if (character == '<')
      result += "&lt;";
    else
      result += character;
  }
  return result;
}

/// Appends the members of one record to a text.
class Writer {
public:
  Writer(std::string &text, const char *tag, int level) : m_text(text), m_level(level) {
    m_text += '\n' + std::string(static_cast<std::size_t>(level), '\t') + '<' + tag;
  }

  void attribute(const char *tag, const std::string &value) {
    m_text += std::string(" ") + tag + "=\"" + escaped(value) + '"';
  }
  void element(const char *tag, const std::string &value) {
    startChild();
    m_text += std::string("<") + tag + '>' + escaped(value) + "</" + tag + '>';
  }
  template <class Record>
  void list(const char *tag, const char *itemTag, const std::vector<Record> &records);

private:
  void startChild() {
    if (!m_open)
      m_text += '>';
    m_open = true;
    m_text += '\n' + std::string(static_cast<std::size_t>(m_level) + 1, '\t');
  }

  std::string &m_text;
  int m_level;
  bool m_open = false;
};

template <class Record>
void writeRecord(std::string &text, const char *tag, int level, const Record &record) {
  Record::visit(record, Writer(text, tag, level));
  text += '\n' + std::string(static_cast<std::size_t>(level), '\t') + "</" + tag + '>';
}

template <class Record>
void Writer::list(const char *tag, const char *itemTag, const std::vector<Record> &records) {
  startChild();
  m_text += std::string("<") + tag + '>';
  for (const Record &record : records)
    writeRecord(m_text, itemTag, m_level + 2, record);
  startChild();
  m_text += std::string("</") + tag + '>';
}

} // namespace

void WriteChipFile(const std::string &path, int first, int count) {
  std::ofstream file;
  file.exceptions(std::ios::failbit | std::ios::badbit);
  file.open(path, std::ios::binary | std::ios::trunc);

  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VorlanTyp>";
  writeRecord(text, "Contents", 1, makeContents());
  text += "\n\t<VorlanModels>";
  for (int number = first; number < first + count; ++number) {
    writeRecord(text, "VorlanModel", 2, makeModel(number));
    file << text;
    text.clear();
  }
  text += "\n\t</VorlanModels>\n\t<LinkCompatibleModels>\n\t</LinkCompatibleModels>"
          "\n\t<ClockingSchemes>\n\t</ClockingSchemes>\n</VorlanTyp>\n";
  file << text;
  file.close();
}
