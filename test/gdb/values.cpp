// The program that gdb stops: objects of every class that has a printer, intact and broken ones.

#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"
#include "vxserialize/memory_writer.h"
#include "vxuri/uri_parse_data.h" // complete here: the libraries may have no debug information

#include <array>
#include <cstring>

using namespace vxattribute;

// Not constant and not local, so that the compiler keeps objects that nobody uses.
namespace objects {

vxcore::Uuid uuid(vxcore::Uuid::BinaryData{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
vxcore::AbsoluteTime moment(17'000'000'000'000'001);
vxcore::AbsoluteTime early(-622'000'000'000'000'000);
vxcore::RelativeTime span(-900'610'000'000);
vxcore::SimpleDateTime meeting({.year = 12026, .month = 2, .day = 28, .hour = 14});
vxcore::StringKey key_of_text("a\"b\n\xff\xc3\xa9");
vxcore::StringKey key_of_none;
vxcore::SourceString literal("a literal", true);

vxuri::UriReference undefined_uri;
auto uri = vxuri::UriReference::parse("https://example.org/a?b");

vxcrypto::Key key("0123456789abcdef", 16);
vxcrypto::Key no_key;

vxcore::ErrorInfo::Ptr make_error(char const * code, char const * text,
                                  vxcore::ErrorInfo::Ptr nested) {
    return vxcore::ErrorInfo::create(vxcore::ErrorCode(code, true),
                                     vxcore::SourceString(text, true), {},
                                     {"shop::find()", "shop.cpp", 7}, std::move(nested));
}

vxcore::ErrorInfo::Ptr error =
    make_error("error.shop.order", "No \"order\"", make_error("error.shop.disk", "Full", nullptr));
vxcore::ErrorInfo::Ptr error_ring =
    make_error("error.shop.a", "", make_error("error.shop.b", "", nullptr));
vxcore::ErrorInfo::Ptr no_error;

auto bytes = vxserialize::MemoryList::create("some bytes that are more than the printer shows", 47);

unsigned char const raw[] = {0xDE, 0xAD, 0xBE, 0xEF};
BinaryValue binary(raw, 4);
SerializedValue serialized("shop.order", bytes);
SecuredValue sealed(AttributeValue("SECRET"), "login", {"disk", uuid}, key,
                    SecuredValue::default_cipher());
SecuredValue sealed_by_nothing(AttributeValue("SECRET"), "", {}, no_key,
                               *SecuredValue::default_cipher_provider().find_cipher("NULL"));

AttributeValue null_value;
AttributeValue yes(true);
AttributeValue small(7); // a static object
AttributeValue large(8080);
AttributeValue ports = make_list<long long>({80, 443});
AttributeValue text("localhost");
AttributeValue texts = make_list<std::string>({"/", "/status"});
AttributeValue rate(2.5);
AttributeValue uuid_value(uuid);
AttributeValue uri_value(uri);
AttributeValue moment_value(moment);
AttributeValue span_value(span);
AttributeValue meeting_value(meeting);
AttributeValue binary_value(binary);
AttributeValue serialized_value(serialized);
AttributeValue sealed_value(sealed);
AttributeValue error_value(error);
AttributeValue errors = make_list<vxcore::ErrorInfo::Ptr>({no_error, error->nested()});
AttributeValue uuids = make_list<vxcore::Uuid>({uuid, vxcore::Uuid()});
AttributeValue empty_boolean(ValueTypeId::typeBoolean);

AttributeName name("host");
AttributeName no_name;
Attribute attribute("port", 8080);
AttributeMap no_map;
AttributeMap map = make_map({{"port", 8080},
                             {"host", "localhost"},
                             {"limits", make_map({{"rate", 2.5}, {"none", AttributeValue()}})}});
AttributeValue map_value(map);
AttributeValue maps = make_list<AttributeMap>({no_map, make_map({{"a", 1}})});
AttributeMap::const_iterator limits = map.find("limits");
AttributeMap::const_iterator map_end = map.end();
AttributeMap deep;       // more maps in each other than gdb itself can follow
AttributeMap ring;       // contains itself
AttributeMap miscounted; // counts an element that it has not

auto package = AttributeNamePackage::Composer("port").add("host").compose();
auto packages = AttributeNamePackageSet::create(package);
AttributeNamePackage::Ptr no_package;

// What memory without an object may contain.
struct alignas(8) Bytes {
    std::array<unsigned char, 256> bytes{};
};

Bytes zeros;
Bytes garbage;
int number_of_no_type = 999;
void * no_type[] = {nullptr, &number_of_no_type};
void * value_of_no_type = no_type;

void fill() {
    garbage.bytes.fill(0xA5);
    for (int i = 0; i < 300; ++i) {
        AttributeMap outer = make_map({{"in", deep}});
        deep.swap(outer);
    }
    WritableAttributeMapRef(ring).add("self", AttributeMap());
    auto & inner = const_cast<AttributeMap &>(get<AttributeMap>(ring, "self"));
    std::memcpy(static_cast<void *>(&inner), &ring, sizeof ring);
    WritableAttributeMapRef(miscounted).add("a", 1);
}

/// Where gdb stops.
[[gnu::noinline]] void stop(AttributeValue const & argument) {
    asm volatile("" : : "r"(&argument) : "memory");
}

} // namespace objects

int main() {
    objects::fill();
    objects::stop(objects::ports);
    std::_Exit(0); // broken objects are not to be destroyed
}
