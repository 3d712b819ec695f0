// The rule under test: a value becomes the told sequence of operations, every told sequence becomes
// a value again, and a stream that fails changes nothing.

#include "support/expect_error.h"

#include "vxattribute/recorded_stream.h"
#include "vxattribute/samples.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/text_reader.h"
#include "vxserialize/text_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <pthread.h>

namespace {

using namespace vxattribute;
using Operations = std::vector<std::string>;

Operations operations_of(AttributeValue const & value) {
    vxtest::RecordingWriter writer;
    write_attribute_value(writer, value);
    return writer.operations;
}

AttributeValue read_script(Operations const & script, Operations const & rest = {}) {
    vxtest::ScriptedReader reader(script);
    AttributeValue value;
    read_attribute_value(reader, value);
    EXPECT_EQ(reader.rest(), rest);
    return value;
}

TEST(Marshaler, WorkedExample) {
    AttributeMap const map = make_map(
        {{"x", 5}, {"y", make_list<std::string>({"s", "t"})}, {"n", make_map({{"w", true}})}});
    std::map<std::string, Operations> const elements = {
        {"x", {"key x", "int 5"}},
        {"y", {"key y", "uint 3", "list 2", "string s", "next", "string t", "end"}},
        {"n", {"key n", "uint 12", "list 1", "list 1", "key w", "true", "end", "end"}}};
    Operations expected = {"uint 12", "list 1", "list 3"};
    for (auto const & [name, value] : map) { // the order of names differs from run to run
        if (expected.size() > 3) {
            expected.push_back("next");
        }
        Operations const & element = elements.at(name.value());
        expected.insert(expected.end(), element.begin(), element.end());
    }
    expected.insert(expected.end(), {"end", "end"});
    EXPECT_EQ(operations_of(map), expected);
    EXPECT_EQ(read_script(expected), AttributeValue(map));
    vxtest::RecordingWriter writer;
    map.write(writer);
    EXPECT_EQ(writer.operations, Operations(expected.begin() + 2, expected.end() - 1));
}

TEST(Marshaler, OperationsPerType) {
    struct {
        AttributeValue value;
        Operations operations;
    } const rows[] = {
        {AttributeValue(), {"null"}},
        {true, {"true"}},
        {5, {"int 5"}},
        {"s", {"string s"}},
        {vxcore::Uuid(), {"uuid 00000000000000000000000000000000"}},
        {vxcore::AbsoluteTime(3), {"absolute 3"}},
        {vxcore::RelativeTime(-3), {"relative -3"}},
        {BinaryValue(4), {"binary 4"}},
        {AttributeValue(ValueTypeId::typeString), {"uint 3", "list 0", "end"}},
        {AttributeValue(ValueTypeId::typeBinary), {"uint 10", "list 0", "end"}},
        {AttributeValue(ValueTypeId::typeAttributeMap), {"uint 12", "list 0", "end"}},
        {make_map({}), {"uint 12", "list 1", "list 0", "end", "end"}},
        {make_list<bool>({true, false}), {"uint 1", "list 2", "true", "next", "false", "end"}},
        {impl::ErrorInfoPtr(), {"uint 14", "null"}},
        {SerializedValue(),
         {"uint 11", "record", "record", "string ", "endrecord", "binary 0", "endrecord"}},
    };

    for (auto const & row : rows) {
        EXPECT_EQ(operations_of(row.value), row.operations) << to_text(row.value);
    }
    EXPECT_EQ(operations_of(vxuri::UriReference::parse("u"))[0], "uint 6");
    EXPECT_NE(operations_of(vxuri::UriReference::parse("u"))[1].substr(0, 4), "list");
    EXPECT_EQ(operations_of(vxcore::SimpleDateTime())[0], "uint 9");
    AttributeValue shrunk = make_list<double>({1, 2});
    shrunk.set(1.0);
    EXPECT_EQ(operations_of(shrunk), operations_of(1.0));
}

TEST(Marshaler, ReadsWhatOtherWritersMaySend) {
    struct {
        Operations script;
        AttributeValue value;
    } const rows[] = {
        {{"uint 0"}, AttributeValue()},
        {{"uint 4", "double 2.5"}, 2.5},
        {{"uint 3", "list 1", "string s"}, "s"},
        {{"uint 3", "list 0", "string s", "end"}, "s"},
        {{"uint 3", "list 0", "string s", "next", "string t", "end"},
         make_list<std::string>({"s", "t"})},
        {{"uint 3", "list 0", "end"}, AttributeValue(ValueTypeId::typeString)},
        {{"uint 2", "list 9", "int 7", "end"}, 7},
        {{"uint 2", "list 4000000000", "int 1", "next", "int 2", "end"},
         make_list<long long>({1, 2})},
        {{"uint 12", "list 0", "end"}, AttributeValue(ValueTypeId::typeAttributeMap)},
        {{"uint 12", "list 0", "list 0", "end", "end"}, make_map({})},
        {{"uint 12", "list 1", "list 1", "key a", "int 1", "end", "end"}, make_map({{"a", 1}})},
        {{"uint 12", "list 2", "list 0", "end", "next", "list 1", "key a", "null", "end", "end"},
         make_list<AttributeMap>({make_map({}), make_map({{"a", AttributeValue()}})})},
        {{"uint 12", "list 1", "list 7", "key a", "int 1", "next", "key a", "string last", "end",
          "end"},
         make_map({{"a", "last"}})},
        {{"uint 14", "list 2", "null", "next", "null", "end"},
         make_list<impl::ErrorInfoPtr>({nullptr, nullptr})},
    };

    for (auto const & row : rows) {
        EXPECT_EQ(read_script(row.script), row.value) << testing::PrintToString(row.script);
    }
    EXPECT_EQ(read_script({"uint 3", "list 1", "string s", "end"}, {"end"}), "s")
        << "nothing more is asked of a list that says 1";
}

TEST(Marshaler, FailuresLeaveTheTargetUnchanged) {
    auto const fails = [](Operations const & script) {
        vxtest::ScriptedReader reader(script);
        AttributeValue value("kept");
        EXPECT_ANY_THROW(read_attribute_value(reader, value)) << testing::PrintToString(script);
        EXPECT_EQ(value, "kept");
    };
    fails({"list 1", "int 1", "end"});
    fails({"uint 2", "string s"});
    fails({"uint 2", "list 2", "int 1", "next", "string s", "end"});
    fails({"uint 12", "list 2", "list 1", "key a", "uint 99", "end", "end"});
    for (unsigned int tag : {13u, 15u, 4294967295u}) {
        vxtest::ScriptedReader reader({"uint " + std::to_string(tag), "list 0", "end"});
        AttributeValue value;
        std::string const text =
            "Unknown marshaled attribute type id.  Value=" + std::to_string(tag);
        vxtest::expect_error([&] { read_attribute_value(reader, value); },
                             error::vxattribute_value_type_unknown, text.c_str());
    }
    vxtest::ScriptedReader reader({"key new", "uint 99"});
    Attribute attribute("old", 1);
    EXPECT_ANY_THROW(attribute.read(reader));
    EXPECT_EQ(attribute, Attribute("new", 1)) << "the name is read first and stays";
}

/// Replaces names by texts of its own.
struct Coder final : IAttributeNameEncoder, IAttributeNameDecoder {
    void write_encoder_mappings(vxserialize::Writer &) override {}

    void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) override {
        writer << "coded " + name.value();
    }

    void read_decoder_mappings(vxserialize::Reader &) override {}

    AttributeName read_attribute_name(vxserialize::Reader & reader) override {
        std::string text;
        reader >> text;
        return text.substr(6);
    }
};

TEST(Marshaler, CodersReachEveryNameOfAMapButOnlyTheOwnOneOfAnAttribute) {
    AttributeMap const inner = make_map({{"in", 1}});
    AttributeMap const map = make_map({{"out", make_list<AttributeMap>({inner, inner})}});
    Coder coder;
    vxtest::RecordingWriter writer;
    map.write(writer, coder);
    EXPECT_EQ(writer.operations,
              (Operations{"list 1", "string coded out", "uint 12", "list 2", "list 1",
                          "string coded in", "int 1", "end", "next", "list 1", "string coded in",
                          "int 1", "end", "end", "end"}));
    vxtest::ScriptedReader reader(writer.operations);
    EXPECT_EQ(AttributeMap(reader, coder), map);

    vxtest::RecordingWriter single;
    Attribute("out", inner).write(single, coder);
    EXPECT_EQ(single.operations, (Operations{"string coded out", "uint 12", "list 1", "list 1",
                                             "key in", "int 1", "end", "end"}));
    vxtest::ScriptedReader again(single.operations);
    Attribute attribute;
    attribute.read(again, coder);
    EXPECT_EQ(attribute, Attribute("out", inner));
}

struct StringTarget final : vxserialize::TextWriter::ITextTarget {
    std::string text;

    void write_char(char c) override { text += c; }

    void write_data(char const * data, unsigned int size) override { text.append(data, size); }
};

struct StringStream final : vxcore::IReadStream {
    explicit StringStream(std::string_view source) : left(source) {}

    unsigned int read(void * buffer, unsigned int size) override {
        auto const count = static_cast<unsigned int>(std::min<std::size_t>(size, left.size()));
        std::memcpy(buffer, left.data(), count);
        return skip(count);
    }

    unsigned int skip(unsigned int size) override {
        auto const count = static_cast<unsigned int>(std::min<std::size_t>(size, left.size()));
        left.remove_prefix(count);
        return count;
    }

    long long size() const override { return -1; }

    std::string_view left;
};

AttributeValue through_binary(AttributeValue const & value) {
    vxserialize::MemoryWriter writer;
    write_attribute_value(writer, value);
    vxserialize::MemoryReader reader = writer.reader();
    AttributeValue result;
    read_attribute_value(reader, result);
    EXPECT_EQ(reader.next_type(), vxserialize::eElement_None) << "nothing is left";
    return result;
}

AttributeValue through_text(AttributeValue const & value) {
    StringTarget target;
    vxserialize::TextWriter writer(target, vxserialize::TextWriter::Options());
    write_attribute_value(writer, value);
    writer.close();
    StringStream stream(target.text);
    vxserialize::TextReader reader(stream, 64);
    AttributeValue result;
    read_attribute_value(reader, result);
    return result;
}

TEST(Marshaler, EveryTypeSurvivesBothForms) {
    MutableAttributeMap all;
    for (vxtest::Sample const & sample : vxtest::samples()) {
        EXPECT_EQ(through_binary(sample.value), sample.value) << sample.name;
        EXPECT_EQ(through_text(sample.value), sample.value) << sample.name;
        all.add(sample.name + std::to_string(all.size()), sample.value);
    }
    EXPECT_EQ(through_binary(all), AttributeValue(all));
    EXPECT_EQ(through_text(all), AttributeValue(all));
    for (double const number : {std::numeric_limits<double>::denorm_min(), -0.0, 0.1, 1e300}) {
        EXPECT_EQ(through_text(number).hash(), AttributeValue(number).hash());
    }
}

/// Map in map as deep as streams allow: each level opens two lists.
AttributeValue nested(int levels) {
    AttributeValue value(1);
    for (int i = 0; i < levels; ++i) {
        value = make_map({{"nested", value}});
    }
    return value;
}

TEST(MarshalerDepth, DeepestNestingWorksOnASmallStack) {
    static AttributeValue const deepest = nested(256);
    static AttributeValue const same = nested(256);
    auto const work = [](void *) -> void * {
        AttributeValue const binary = through_binary(deepest);
        AttributeValue const text = through_text(deepest);
        bool const good = binary == deepest && text == same && deepest.compare(same) == 0 &&
                          binary.hash() == deepest.hash() && to_text(binary) == to_text(deepest);
        return good ? const_cast<AttributeValue *>(&deepest) : nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
    pthread_attr_setstacksize(&attributes, 256 * 1024); // the promise is for release builds
#endif
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, nullptr), 0);
    void * result = nullptr;
    pthread_join(thread, &result);
    pthread_attr_destroy(&attributes);
    EXPECT_NE(result, nullptr);
    EXPECT_THROW(through_binary(nested(257)), vxcore::ErrorException);
    EXPECT_THROW(through_text(nested(257)), vxcore::ErrorException);
}

} // namespace
