// The rule under test: with sorted names a value has the same bytes in every process and every
// form. Otherwise the order of a map depends on the addresses of its names: here two processes make
// names that no other test uses, in two orders.

#include "vxattribute/value_forms.h"

#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace vxattribute;
using vxserialize::Writer;
using Names = std::vector<AttributeName>;

AttributeMap sample() {
    AttributeMap const inner =
        make_map({{"sorted names", 1}, {"Sorted names", "x"}, {"sort names", 0.5}});
    return make_map(
        {{"sorted names", make_list<AttributeMap>({inner, {}})},
         {"Sorted names", make_list<long long>({1, 2})},
         {"\xC3\xA4", make_map({{"", true}, {"vxserialize", 2}, {"sort names", inner}})}});
}

std::string all_forms(AttributeMap const & map, bool isSorted) {
    auto const write = [&map, options = StreamOptions{isSorted}](Writer & writer) {
        auto const package = AttributeNamePackage::create(Names{"Sorted names"});
        auto const other = AttributeNamePackage::create(Names{"sorted names"});
        AttributeNameEncoder encoder(AttributeNamePackageSet::create(package)->create_union(other));
        write_attribute_value(writer, encoder, map, options);
        write_attribute_map(writer, encoder, map, options);
        write_attribute_value(writer, map, options);
    };
    std::ostringstream text;
    map.write_trace(text, TraceFormatter::Composer().sorted_names(isSorted).compose(), 0);
    text << value_to_json(map, JsonTextOptions{.sorted_names = isSorted})
         << vxtest::write_binary_form(write) << vxtest::write_text_form(write);
    return text.str();
}

/// Returns what a process writes that makes the names in that order. It must fit into a pipe.
std::string in_new_process(bool isSorted, std::vector<std::string> const & order) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    pid_t const child = fork();
    EXPECT_GE(child, 0);
    if (child == 0) {
        Names const names(order.begin(), order.end());
        std::string const text = all_forms(sample(), isSorted);
        _exit(write(ends[1], text.data(), text.size()) <= 0);
    }
    close(ends[1]);
    std::string text(1 << 16, '\0');
    text.resize(static_cast<std::size_t>(read(ends[0], text.data(), text.size())));
    int status = -1;
    wait(&status);
    EXPECT_EQ(status, 0);
    close(ends[0]);
    return text;
}

TEST(SortedNames, GiveTheSameBytesInEveryProcess) {
    for (bool const isSorted : {true, false}) {
        std::string const one =
            in_new_process(isSorted, {"sort names", "Sorted names", "sorted names"});
        std::string const other =
            in_new_process(isSorted, {"sorted names", "Sorted names", "sort names"});
        EXPECT_EQ(one == other, isSorted) << one << "\n" << other;
    }
}

} // namespace
