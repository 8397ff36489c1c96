#include "tools/change.h"
#include "tools/commands.h"
#include "tools/texts.h"

namespace {

struct Options {
  ChangeOptions change;
  std::string collection;
  std::string key;
  std::string like;
  std::vector<std::string> assignments;
};

/// Gives a record the texts and items of another one of its class. The depth is that of the classes.
void copyMembers(CXMLFolder &from, CXMLFolder &to) {
  const std::vector<kestrune::MemberView> source = kestrune::MembersOf(from);
  const std::vector<kestrune::MemberView> target = kestrune::MembersOf(to);
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source[i].collection != nullptr) {
      for (int item = 0; item < source[i].collection->Count(); ++item) {
        CXMLFolder &original = *(*source[i].collection)[item];
        if (CXMLFolder *const copy = target[i].collection->Add(original.Key()))
          copyMembers(original, *copy);
      }
    } else if (source[i].folder != nullptr) {
      copyMembers(*source[i].folder, *target[i].folder);
    } else {
      target[i].value->CXMLPersistent::operator=(std::string(source[i].value->View()).c_str());
    }
  }
}

/// Gives a record the texts of one that was never in a file. The depth is that of the classes.
void putDefaults(const Document &document, const Record &record) {
  for (const Member &member : document.members(record)) {
    if (member.folder == nullptr)
      putDefault(record, member);
    else if (member.collection == nullptr)
      putDefaults(document, document.folderOf(record, member));
  }
}

int addRecord(const Document &document, const Options &options) {
  const Found place = findOne(document, options.collection);
  if (!place.isMember() || place.member.collection == nullptr)
    throw Refused{{document.name() + ": '" + options.collection + "' is no collection"}};
  const std::string cannot = whyNotXml(options.key);
  if (!cannot.empty())
    throw Refused{{document.name() + ": '" + options.key + "': " + cannot}};
  CXMLCollectionFolder &list = *place.member.collection;
  const RecordShape &shape = *place.member.shape->folder;
  checkKey(document, {nullptr, &shape, Outline::kNone, {}, &list}, options.key);
  CXMLFolder *original = nullptr;
  if (!options.like.empty()) {
    const Found like = findOne(document, options.collection + "/" + addressStep(options.like));
    original = like.record.folder;
  }
  CXMLFolder *const item = list.Add(options.key.c_str());
  if (item == nullptr)
    throw Refused{{document.name() + ": " + place.member.shape->tag + " does not take '" + options.key + "'"}};
  if (original != nullptr)
    copyMembers(*original, *item);
  putKey(*item, shape, options.key);
  const Record record = document.items(place.record, place.member).back();
  if (original == nullptr)
    putDefaults(document, record);
  return std::max(place.member.shape->version,
                  assign(document, resolve(document, record.address, options.assignments, options.change.force),
                         options.change.force));
}

int add(const Options &options) {
  return carryOut(options.change, false, [&](const Document &document) { return addRecord(document, options); });
}

} // namespace

void addAddCommand(CLI::App &app, Run &run) {
  Command command(app, run, "add",
                  "Add a record, from defaults or as a copy of another; a chip model gets KEY as its "
                  "Key and, unless that is given, as its Name");
  const auto options = std::make_shared<Options>();
  addChange(command, options->change, "Take texts that check calls an error, and say nothing of other errors");
  command.option("COLLECTION", options->collection, "Road to it, such as VorlanModels or ClockingSchemes/5/Clocks")
      .required();
  command.option("KEY", options->key, "Key of the new record").required();
  command.option("MEMBER=TEXT", options->assignments, "Members of the record, with their texts");
  command.option("--like", options->like, "Copy this record of the collection").called("KEY");
  command.examples(
      {"kestrune-data add spidData.xml ManufacturerIDs 'Vorlan works' Number=0x1F",
       "kestrune-data add Vorlan.xml VorlanModels KVO-2208C-N32 'Name=Vorlan 2208-C' --like KVO-2208-N32"});
  command.runs([options] { return add(*options); });
}
