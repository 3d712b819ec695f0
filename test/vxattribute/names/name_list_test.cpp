// The rule under test: packages are made from values and from lists that people edit, and a text
// that is no list is refused with the number of its faulty line.

#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"

namespace {

using namespace vxattribute;
using vxtest::expect_error;

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

TEST(NameList, HoldsANameOnEachLine) {
    auto const package = name_list_from_text("port\nhost\n two words \n", "f");
    EXPECT_EQ(name_list_to_text(*package, "f"), " two words \nhost\nport\n");
    EXPECT_TRUE(name_list_from_text("", "f")->empty());
}

TEST(NameList, IsRefusedWithTheBadLine) {
    auto const & notAList = error::vxattribute_name_package_serialization;

    struct {
        char const * text;
        char const * message;
        vxcore::ErrorCode const & code;
    } const rows[] = {
        {"a\n\nb\n", "f:2: an empty line is no name", notAList},
        {"\xEF\xBB\xBF\x61\n", "f:1: a byte order mark, which would be part of the name", notAList},
        {"a\r\n", "f:1: a carriage return at the end of the line", notAList},
        {"a\nb", "f:2: the file ends in the middle of this line", notAList},
        {"a\nb\na\n", "f:3: this name is in the list already",
         error::vxattribute_name_package_duplicateName},
    };

    for (auto const & [text, message, code] : rows) {
        expect_error([&, text = text] { name_list_from_text(text, "f"); }, code, message);
    }
    for (char const * name : {"", "two\nlines", "return\r"}) {
        expect_error(
            [&] { name_list_to_text(*AttributeNamePackage::Composer(name).compose(), "f"); },
            notAList, "f: a name of the package cannot be written on one line");
    }
}

} // namespace
