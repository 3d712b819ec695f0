#include "vxattribute/samples.h"

#include "vxcore/error_composer.h"
#include "vxserialize/memory_list.h"
#include "vxuri/uri_parse_data.h"

namespace vxtest {

using namespace vxattribute;

namespace {

template <typename T>
void append_default(AttributeValue & value) {
    value.multivalue_writer<T>().push_back(impl::ValueTypeTraits<T>::default_value());
}

template <typename T>
void add(std::vector<Sample> & samples, char const * name, T const & a, T const & b) {
    void (*const change)(AttributeValue &) = append_default<T>;
    samples.push_back({name, AttributeValue(a), change});
    samples.push_back({name, make_list<T>({a, b, a}), change});
    samples.push_back({name, AttributeValue(impl::ValueTypeTraits<T>::type()), change});
}

impl::ErrorInfoPtr error(char const * message) {
    return vxcore::ErrorComposer(message).create(error::vxattribute_query, {});
}

SerializedValue payload(char const * type, std::string const & bytes) {
    return SerializedValue(type, vxserialize::MemoryList::create(
                                     bytes.data(), static_cast<unsigned int>(bytes.size())));
}

SecuredValue sealed(char const * annotation, AttributeValue const & value) {
    vxcrypto::Key const key("sixteen byte key", 16);
    return SecuredValue(value, annotation, {"category", vxcore::Uuid()}, key,
                        SecuredValue::default_cipher());
}

} // namespace

vxuri::UriReference undefined_uri(std::string text) {
    using vxuri::impl::UriParseData;
    return vxuri::UriReference(
        vxcore::make_ref_counted<UriParseData>(std::move(text), UriParseData::Parts{~0u}));
}

std::vector<Sample> samples() {
    std::vector<Sample> all;
    add<bool>(all, "Boolean", true, false);
    add<long long>(all, "SmallInteger", 7, -1);
    add<long long>(all, "Integer", 1000, -5'000'000'000);
    add<double>(all, "Double", 1.5, -0.0);
    add<std::string>(all, "ShortString", "short", "");
    add<std::string>(all, "String", std::string(100, 'x'), std::string("a\0b", 3));
    add<vxcore::Uuid>(all, "Uuid", vxcore::Uuid({1, 0x80}), vxcore::Uuid());
    add<vxuri::UriReference>(all, "Uri", vxuri::UriReference::parse("http://a/b?c#d"),
                             undefined_uri("e"));
    add<vxcore::AbsoluteTime>(all, "AbsoluteTime", vxcore::AbsoluteTime(123'456'789'012),
                              vxcore::AbsoluteTime(-1));
    add<vxcore::RelativeTime>(all, "RelativeTime", vxcore::RelativeTime(-77),
                              vxcore::RelativeTime(5));
    add<vxcore::SimpleDateTime>(all, "SimpleDateTime", vxcore::SimpleDateTime(987'654'321),
                                vxcore::SimpleDateTime(3));
    unsigned char const bytes[] = {0x80, 0x00, 0x7f};
    add<BinaryValue>(all, "Binary", BinaryValue(bytes, 3), BinaryValue(40));
    add<SerializedValue>(all, "Serialized", payload("x", "payload"), payload("y", "other"));
    add<SecuredValue>(all, "Secured", sealed("a", 1), sealed("b", make_map({{"c", "text"}})));
    add<AttributeMap>(all, "Map", make_map({{"a", 1}, {"b", make_map({{"c", "deep"}})}}),
                      make_map({{"z", 2.5}}));
    add<impl::ErrorInfoPtr>(all, "ErrorInfo", error("one"), error("two"));
    return all;
}

AttributeValue deep_copy(AttributeValue const & value) {
    AttributeValue copy(value.type());
    visit_elements(value, [&copy]<typename T>(std::span<T const> elements) {
        std::vector<AttributeMap> maps;
        if constexpr (std::is_same_v<T, AttributeMap>) {
            for (AttributeMap const & map : elements) {
                MutableAttributeMap fresh;
                for (auto const & [name, element] : map) {
                    fresh.add(name, deep_copy(element));
                }
                maps.push_back(fresh);
            }
            elements = maps;
        }
        impl::ValueHolder holder(impl::ValueFactory<T>::create_value(
            elements.data(), elements.data() + elements.size()));
        copy.swap_impl(holder);
    });
    return copy;
}

} // namespace vxtest
