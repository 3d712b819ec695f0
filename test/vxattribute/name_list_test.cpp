// The rule under test: packages come from values and from files as people keep them, and a file
// that is no list is refused with its line.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

using namespace vxattribute;
using vxtest::expect_error;

/// Each case has a folder of its own, for cases run side by side.
class NameListFile : public testing::Test {
  protected:
    NameListFile() { std::filesystem::create_directory(folder); }

    ~NameListFile() override { std::filesystem::remove_all(folder); }

    std::string save(std::string const & text) const {
        std::ofstream(folder + "names", std::ios::binary) << text;
        return folder + "names";
    }

    std::string const folder = testing::TempDir() + "names." + std::to_string(getpid()) + "/";
};

TEST(NameList, ComesFromAllMapsOfAValue) {
    AttributeMap const inner = make_map({{"in", make_map({{"deep", AttributeValue()}})}});
    AttributeValue const value = make_list<AttributeMap>({inner, make_map({{"host", "x"}})});
    AttributeNamePackage::Composer composer("port");
    collect_names(value, composer);
    collect_names(AttributeValue("no map"), composer);
    collect_names(make_map({{"list", value}, {"port", 1}}), composer);
    EXPECT_EQ(to_text(*composer.compose()),
              "package 410f2975-6053-9f4b-a64a-a35dfe40827b: 5 names\n"
              "  0 \"deep\"\n  1 \"host\"\n  2 \"in\"\n"
              "  3 \"list\"\n  4 \"port\"");
}

TEST_F(NameListFile, HoldsANameOnEachLine) {
    std::string const path = save("port\nhost\n two words \n");
    auto const package = read_name_list_file(path);
    write_name_list_file(path, *package);
    std::ostringstream written;
    written << std::ifstream(path).rdbuf();
    EXPECT_EQ(written.str(), " two words \nhost\nport\n");
    EXPECT_EQ(read_name_list_file(path)->id(), package->id());
    EXPECT_TRUE(read_name_list_file(save(""))->empty());
}

TEST_F(NameListFile, IsRefusedWithTheBadLine) {
    using namespace error;

    struct {
        char const * text;
        char const * message;
        vxcore::ErrorCode const & code;
    } const rows[] = {
        {"a\n\nb\n", ":2: an empty line is no name", vxattribute_name_package_serialization},
        {"\xEF\xBB\xBF"
         "a\n",
         ":1: a byte order mark, which would be part of the name",
         vxattribute_name_package_serialization},
        {"a\r\n", ":1: a carriage return at the end of the line",
         vxattribute_name_package_serialization},
        {"a\nb", ":2: the file ends in the middle of this line",
         vxattribute_name_package_serialization},
        {"a\nb\na\n", ":3: this name stands in the list already",
         vxattribute_name_package_duplicateName},
    };

    for (auto const & [text, message, code] : rows) {
        std::string const path = save(text);
        expect_error([&] { read_name_list_file(path); }, code, path + message);
    }
    for (std::string const & path : {folder + "no such file", folder}) {
        expect_error([&] { read_name_list_file(path); },
                     error::vxattribute_name_package_serialization,
                     path + ": the file cannot be read");
    }
}

TEST_F(NameListFile, StaysWhenAWriteFails) {
    std::string const path = save("kept\n");
    for (char const * name : {"", "two\nlines", "return\r"}) {
        expect_error(
            [&] { write_name_list_file(path, *AttributeNamePackage::Composer(name).compose()); },
            error::vxattribute_name_package_serialization,
            path + ": a name of the package cannot stand on a line");
    }
    std::filesystem::create_directory(path + ".new");
    expect_error(
        [&] { write_name_list_file(path, *AttributeNamePackage::Composer("new").compose()); },
        error::vxattribute_name_package_serialization, path + ": the file cannot be written");
    EXPECT_EQ(read_name_list_file(path)->count("kept"), 1u);
    EXPECT_TRUE(std::filesystem::is_directory(path + ".new"));
}

} // namespace
