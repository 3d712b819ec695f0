// The rule under test: what values cost on the heap. The library is built without the block cache,
// which asks the heap for many blocks at a time.

#include "support/allocation.h"

#include "vxattribute/samples.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace vxattribute;

TEST(RepresentationCost, Allocations) {
    static std::string const text(60, 't');
    AttributeValue value, list = make_list<double>({1, 2, 3}), scalar(2.5);

    struct {
        char const * what;
        unsigned long expected;
        std::function<void()> action;
    } const rows[] = {
        {"null", 0, [] { AttributeValue(); }},
        {"small integer", 0, [] { AttributeValue v(7), w = v; }},
        {"empty string", 0, [] { AttributeValue v(""), w(ValueTypeId::typeString); }},
        {"large integer", 1, [] { AttributeValue v(8); }},
        {"double and its copy", 2, [] { AttributeValue v(1.5), w = v; }},
        {"short string and its copy", 1, [] { AttributeValue v("short"), w = v; }},
        {"long string", 2, [] { AttributeValue v(text); }},
        {"list and its copy", 2,
         [] {
             AttributeValue v(make_list<double>({1, 2})), w(v);
         }},
        {"set in place", 0, [&] { scalar.set(3.5); }},
        {"set of a shared list", 1, [&] { AttributeValue(list).set(1.5); }},
        {"first write to a shared list", 2,
         [&] { AttributeValue(list).multivalue_writer<double>(); }},
        {"back to one element", 0, [&] { list.set(9.0); }},
    };

    for (auto const & row : rows) {
        EXPECT_EQ(vxtest::count_allocations(row.action), row.expected) << row.what;
    }
}

TEST(RepresentationCost, ListsDouble) {
    AttributeValue value(1.0);
    auto writer = value.multivalue_writer<double>();
    EXPECT_EQ(vxtest::count_allocations([&] { writer.push_back(2); }), 2u); // object, block of 2
    EXPECT_EQ(vxtest::count_allocations([&] { writer.push_back(3); }), 1u); // block of 4
    EXPECT_EQ(vxtest::count_allocations([&] { writer.push_back(4); }), 0u);
    EXPECT_EQ(vxtest::count_allocations([&] { writer.push_back(5); }), 1u); // block of 8
}

TEST(RepresentationCost, ListsThatShrinkToOneElementGiveTheirBlockBack) {
    void (*const ways[])(AttributeValue &) = {
        [](AttributeValue & list) { list.clear(); }, [](AttributeValue & list) { list.set(9.0); },
        [](AttributeValue & list) {
            list.multivalue_writer<double>().assign(list.begin<double>(), list.end<double>() - 2);
        }};
    for (auto const shrink : ways) {
        AttributeValue list = make_list<double>({1, 2, 3});
        long const before = vxtest::live_blocks();
        shrink(list);
        EXPECT_EQ(vxtest::live_blocks(), before - 1);
        EXPECT_FALSE(list.is_multivalue());
    }
}

} // namespace
