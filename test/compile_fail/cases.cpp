// Misuse that the compiler must refuse. CMakeLists.txt in this folder names the cases.

#include "vxattribute/vxattribute.h"
#include "vxserialize/memory_writer.h"

using namespace vxattribute;

void cases(AttributeMap map, vxserialize::MemoryWriter writer) {
    int number = 0;
    AttributeValue value(number);
    value.set(5L);
    (void)value.get<long long>();
    writer << "text";
    (void)map;
    auto const package = AttributeNamePackage::Composer("x").compose();
    (void)package->find("x");
#if defined(VX_CASE_VALUE_FROM_POINTER)
    AttributeValue other(&number);
#elif defined(VX_CASE_VALUE_FROM_NULLPTR)
    value = nullptr;
#elif defined(VX_CASE_VALUE_FROM_CHARACTER)
    value.set('x');
#elif defined(VX_CASE_VALUE_FROM_UNSIGNED_64)
    value = 5ull;
#elif defined(VX_CASE_GET_OF_UNKNOWN_TYPE)
    (void)value.get<int>();
#elif defined(VX_CASE_ACCESS_BY_UNKNOWN_TYPE)
    (void)get<int>(map, "name");
#elif defined(VX_CASE_DEFAULT_OF_UNKNOWN_TYPE)
    (void)get_or<int>(map, "name", 3);
#elif defined(VX_CASE_INTO_UNKNOWN_TYPE)
    Query("name").execute(map, into(writer), nullptr);
#elif defined(VX_CASE_WRITE_THROUGH_ATTRIBUTE_MAP)
    map.add("name", 1);
#elif defined(VX_CASE_WRITER_OF_POINTER)
    writer << &number;
#elif defined(VX_CASE_NAME_FROM_NULLPTR)
    AttributeName name(nullptr);
#elif defined(VX_CASE_HASH_OF_VALUE)
    (void)std::hash<AttributeValue>()(value);
#elif defined(VX_CASE_RAW_POINTER_TO_REF_COUNT_PTR)
    vxcore::RefCountPtr<vxcore::ErrorInfo const> pointer =
        static_cast<vxcore::ErrorInfo *>(nullptr);
#elif defined(VX_CASE_COPY_OF_PACKAGE)
    auto * const copy = new AttributeNamePackage(*package);
#elif defined(VX_CASE_WRITE_THROUGH_PACKAGE)
    *package->begin() = "y";
#elif defined(VX_CASE_DROPPED_AUTHENTICATION)
    SecuredValue().authenticate(vxcrypto::Key());
#elif defined(VX_CASE_SORTED_TEMPORARY)
    (void)sorted_by_name(AttributeMap(map));
#endif
}
