#pragma once

#include "tools/files.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Addresses: the road to a member or a record, such as VorlanModels/KVO-2208X-S32H/ROMend. Between slashes stand, in
// turn, the tag of a folder or member, and the key, name or number of an item; [2] is the second item. A slash or
// backslash in a name has a backslash before it.

/// What an address leads to.
struct Found {
  Record record; ///< The record, or the one that has the member.
  Member member; ///< The member; its shape is null if the address is that of a record.

  bool isMember() const { return member.shape != nullptr; }
  /// Its address as `dump` prints it.
  std::string address() const;
};

/// The steps of an address, as they are meant.
std::vector<std::string> stepsOf(std::string_view address);

/// All that an address leads to, in the order of the file; several where a name is not unique. Throws NotFound where it
/// leads to nothing.
std::vector<Found> find(const Document &document, std::string_view address);

/// What an address leads to in one of several files.
struct FoundIn {
  const Document *document = nullptr;
  Found found;
};

/// All that an address leads to in what programs get: in the first file, and in the items of others that they get with
/// it. Throws NotFound, with the name of the FILE, where it leads to nothing.
std::vector<FoundIn> find(const Loaded &loaded, const std::string &file, std::string_view address);

/// "FILE has no 'NAME'; there are: ...".
struct NotFound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The number that a whole text is, in any base that programs take: 0x20, 32 and 040 are one.
std::optional<long long> numberOf(std::string_view text);

/// The number that a record is known by: its ModelNum, std_id or Number; null without one.
std::optional<Member> numberMember(const Document &document, const Record &record);

/// The member of a shape that a name means, in any case: a tag, the road to a member of a folder in it such as
/// Channel/comm_rate, or the tag of such a member alone. The shapes on the way, the member last; empty without one.
std::vector<const MemberShape *> roadTo(const RecordShape &shape, std::string_view name);

/// Whether `wanted` is the key, the name or the number of a record, in any case. `*` and `?` match in key and name.
bool isCalled(const Document &document, const Record &record, std::string_view wanted);

/// Whether two texts differ at most in the case of ASCII letters.
bool sameText(std::string_view a, std::string_view b);

/// Whether `text` is like `pattern`, in which `*` stands for any characters and `?` for one; in any case.
bool matches(std::string_view text, std::string_view pattern);
