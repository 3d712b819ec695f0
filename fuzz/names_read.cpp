/// Reads packages of names from arbitrary bytes: from a stream; from a text with one name a line;
/// and from a stream whose id is computed here, because no fuzzer guesses a digest.

#include "known_packages.h"
#include "read_all.h"
#include "stream_checks.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/name_list.h"
#include "vxcrypto/md5_context.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/text_reader.h"

#include <algorithm>

using namespace vxattribute;
using vxfuzz::check;
using Package = AttributeNamePackage::Ptr;
using PackageSet = AttributeNamePackageSet::Ptr;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

namespace {

/// Checks that a package or a set is the same after it was written and read.
template <typename Pointer>
void check_written(Pointer const & pointer) {
    auto const write = [](Pointer const & p) {
        return vxfuzz::binary_of([&p](vxserialize::Writer & writer) { writer << p; });
    };
    std::string const bytes = write(pointer);
    vxserialize::MemoryReader reader(vxfuzz::cut(bytes, 7, 30));
    Pointer again;
    reader >> again;
    check(reader.bytes_left() == 0, "what is written is read to its end");
    check(write(again) == bytes, "what is read again is written the same");
}

std::string lines_of(AttributeNamePackage const & package) {
    std::string lines;
    for (AttributeName const & name : package) {
        lines.append(name.value()).push_back('\n');
    }
    return lines;
}

/// Checks that the package comes back from a list of its names, or is refused when it makes no
/// list.
void check_list(AttributeNamePackage const & package) {
    std::string text;
    try {
        text = name_list_to_text(package, "list");
    } catch (vxcore::ErrorException const & e) {
        check(e.info()->code() == error::vxattribute_name_package_serialization,
              "a package that makes no list has its own error");
        return;
    }
    check(text == lines_of(package), "a list holds the names in the order of the package");
    check(name_list_from_text(text, "list")->id() == package.id(), "a list is read as written");
}

void check_package(Package const & package) {
    check_written(package);
    if (!package) {
        return;
    }
    std::vector<AttributeName> names(package->begin(), package->end());
    for (unsigned int i = 0; i < names.size(); ++i) {
        check(i == 0 || names[i - 1].value() < names[i].value(), "names are sorted and differ");
        check(package->find(names[i]) == package->begin() + i, "a name is found at its place");
    }
    std::reverse(names.begin(), names.end());
    check(AttributeNamePackage::create(std::move(names))->id() == package->id(),
          "the same names have the same id");
    check(AttributeNamePackage::Composer().add(package).compose()->id() == package->id(),
          "a composer of the same names makes the same id");
    check_list(*package);
}

void check_set(PackageSet const & set) {
    check_written(set);
    if (!set) {
        return;
    }
    bool overlaps = false;
    for (auto at = set->begin(); at != set->end(); ++at) {
        check(*at != nullptr && (at == set->begin() || at[-1]->id() < at[0]->id()),
              "packages are sorted by their ids and differ");
        check(set->find((*at)->id()) == at, "a package is found at its place");
        for (AttributeName const & name : **at) {
            auto const found = set->find(name);
            check(found <= at && (*found)->count(name) == 1,
                  "a name is found where it comes first");
            overlaps = overlaps || found != at;
        }
    }
    check(set->check_duplicate_names(nullptr) == overlaps, "names in two packages are reported");
    check(set->create_union(set)->size() == set->size(), "a set adds nothing to itself");
}

/// Reads all packages or sets of the stream. Calls `check_one` for the first eight.
template <typename Pointer>
void check_stream(vxserialize::Reader & reader, Pointer const & kept, std::size_t size,
                  void (*check_one)(Pointer const &)) {
    std::vector<Pointer> all;
    Pointer pointer = kept;
    vxfuzz::read_all(
        reader, size,
        [&] {
            reader >> pointer;
            all.push_back(pointer);
            pointer = kept;
        },
        [&] { return pointer == kept; });
    for (std::size_t i = 0; i < all.size() && i < 8; ++i) {
        check_one(all[i]);
    }
}

void check_stream(vxserialize::Reader & reader, bool isSets, std::size_t size) {
    static PackageSet const set = AttributeNamePackageSet::create(vxfuzz::known_packages()[0]);
    if (isSets) {
        check_stream<PackageSet>(reader, set, size, check_set);
    } else {
        check_stream<Package>(reader, vxfuzz::known_packages()[0], size, check_package);
    }
}

/// Splits a text into lines. What follows the last line feed is a line too.
std::vector<std::string> lines_of(std::string_view text) {
    std::vector<std::string> lines;
    while (true) {
        std::size_t const end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        if (end == text.npos) {
            return lines;
        }
        text.remove_prefix(end + 1);
    }
}

/// Sorts the lines. Returns true when all are different.
bool are_distinct(std::vector<std::string> & lines) {
    std::sort(lines.begin(), lines.end());
    return std::adjacent_find(lines.begin(), lines.end()) == lines.end();
}

void check_text(std::string const & text) {
    std::vector<std::string> lines = lines_of(text);
    bool isGood = lines.back().empty() && !text.starts_with("\xEF\xBB\xBF");
    lines.pop_back();
    for (std::string const & line : lines) {
        isGood = isGood && !line.empty() && line.back() != '\r';
    }
    bool const areDistinct = are_distinct(lines);

    vxfuzz::MemoryWatch const watch;
    Package package;
    try {
        package = name_list_from_text(text, "list");
    } catch (vxcore::ErrorException const & e) {
        check(!isGood || !areDistinct, "a good list is accepted");
        check(e.info()->text().starts_with("list:") && e.info()->text().size() < 300,
              "messages name the file and are of a modest size");
        check(
            e.info()->code() == error::vxattribute_name_package_serialization ||
                (!areDistinct && e.info()->code() == error::vxattribute_name_package_duplicateName),
            "a list is refused with the right error");
        return;
    }
    check(watch.peak() <= 128 * text.size() + 65536, "memory stays within 128 times the text");
    check(isGood && areDistinct, "a list with a fault is refused");
    std::string sorted;
    for (std::string const & line : lines) {
        sorted += line + '\n';
    }
    check(lines_of(*package) == sorted, "a package holds the lines of the list");
    check_package(package);
}

/// Computes the id as documented for `AttributeNamePackage`. Only MD5 comes from the libraries.
vxcore::Uuid id_of(std::vector<std::string> const & names) {
    vxcrypto::Md5Context digest;
    auto const update_number = [&digest](unsigned long long number) {
        std::string bytes(8, '\0');
        for (unsigned int i = 0; i < 8; ++i) {
            bytes[i] = static_cast<char>(number >> (56 - 8 * i));
        }
        digest.update(bytes.data(), 8);
    };
    update_number(names.size());
    for (std::string const & name : names) {
        update_number(name.size());
        digest.update(name.data(), static_cast<unsigned int>(name.size()));
    }
    vxcore::Uuid::BinaryData bytes;
    digest.final(bytes.data());
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    bytes[7] = static_cast<unsigned char>((bytes[7] & 0x0F) | 0x40);
    return vxcore::Uuid(bytes);
}

/// Reads a package of these names, in this order and with any repetition, under their own id.
void check_own_id(std::vector<std::string> names) {
    std::string const bytes = vxfuzz::binary_of([&names](vxserialize::Writer & writer) {
        writer.begin_record();
        writer << id_of(names);
        writer.begin_list(static_cast<unsigned int>(names.size()));
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (i != 0) {
                writer.next_list_item();
            }
            writer << names[i];
        }
        writer.end_list();
        writer.end_record();
    });
    bool const isSorted = std::is_sorted(names.begin(), names.end());
    bool const areDistinct = are_distinct(names);
    vxserialize::MemoryReader reader(vxfuzz::cut(bytes, 9, 9));
    Package package;
    try {
        reader >> package;
    } catch (vxcore::ErrorException const & e) {
        check(e.info()->code() == (isSorted ? error::vxattribute_name_package_duplicateName
                                            : error::vxattribute_name_package_serialization),
              "unsorted and repeated names have their own errors");
        check(!isSorted || !areDistinct, "sorted distinct names under their id are accepted");
        return;
    }
    check(isSorted && areDistinct, "unsorted and repeated names are refused");
    check_package(package);
}

} // namespace

/// Modes: packages (0) and sets (1) in binary form, packages (2) and sets (3) in text form, a text
/// with one name a line (4), and names under their own id (5).
extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::ReaderInput input;
    if (!input.parse(data, size)) {
        return 0;
    }
    vxfuzz::known_packages(); // made before memory is watched
    unsigned int const mode = (input.shapes & 0xFF) % 6;
    if (mode == 4) {
        check_text(input.bytes);
    } else if (mode == 5) {
        check_own_id(lines_of(input.bytes));
    } else if (mode >= 2) {
        vxfuzz::ViewStream stream(input.bytes, (input.pieces & 0x80) != 0);
        vxserialize::TextReader reader(stream, 1 + (input.pieces & 0x7F));
        check_stream(reader, mode == 3, input.bytes.size());
    } else {
        unsigned int const first = input.pieces == 0 ? 0xFFFFFFFF : 1 + (input.pieces & 15);
        vxserialize::MemoryReader reader(vxfuzz::cut(input.bytes, first, 1 + (input.pieces >> 4)));
        check_stream(reader, mode == 1, input.bytes.size());
    }
    return 0;
}
