// Everything of the library that lives as long as the library does, in the order in which it is
// built. It is in one source because the order between sources is nobody's to choose. What
// load-time code builds for programs to read is exported as a reference, which is a constant: a
// program may hold copies of exported objects, made before load-time code runs.
//
// 1. Constants, without load-time code: type ids, null, the singletons of booleans and integers.
// 2. Type names.
// 3. The two shared strings.
// 4. The defaults of the element types.
// 5. The shared empty map and the default of the map type.
// 6. Ciphers and their providers.
// 7. Trace settings, then `defaultTraceFormatter`.
// 8. Names of the JSON form.
// 9. The registrar: once it has run, all of the library is there.

#include "vxattribute/element_types.h"
#include "vxattribute/json/keys_internal.h"
#include "vxattribute/module/module_registrar_internal.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxattribute/trace/trace_formatter_internal.h"
#include "vxattribute/value/value_singletons_internal.h"

#include <new>
#include <utility>

namespace vxattribute {

// 1. Constants and 2. names

namespace {

/// Room for a string that load-time code makes and nobody destroys. All names are short enough to
/// need no memory of their own.
union NameStorage {
    constexpr NameStorage() noexcept : unused(0) {}

    ~NameStorage() {}

    char unused;
    std::string name;
};

constinit NameStorage typeNames[ValueTypeId::eId_ErrorInfo + 1];

} // namespace

#define VXATTRIBUTE_TYPE(Type)                                                                     \
    constinit ValueTypeId const ValueTypeId::type##Type(ValueTypeId::eId_##Type,                   \
                                                        &typeNames[ValueTypeId::eId_##Type].name)

VXATTRIBUTE_TYPE(Null);
VXATTRIBUTE_TYPE(Boolean);
VXATTRIBUTE_TYPE(Integer);
VXATTRIBUTE_TYPE(String);
VXATTRIBUTE_TYPE(Double);
VXATTRIBUTE_TYPE(Uuid);
VXATTRIBUTE_TYPE(Uri);
VXATTRIBUTE_TYPE(AbsoluteTime);
VXATTRIBUTE_TYPE(RelativeTime);
VXATTRIBUTE_TYPE(SimpleDateTime);
VXATTRIBUTE_TYPE(Binary);
VXATTRIBUTE_TYPE(Serialized);
VXATTRIBUTE_TYPE(AttributeMap);
VXATTRIBUTE_TYPE(Secured);
VXATTRIBUTE_TYPE(ErrorInfo);

#undef VXATTRIBUTE_TYPE

namespace impl {

constinit TypedValue<NullValueType> TypedValue<NullValueType>::sm_instance;

namespace {

constinit StaticStorage<EmptySingleton<bool>> emptyBoolean;
constinit StaticStorage<SingleValueSingleton<bool>> booleans[] = {{false}, {true}};
constinit StaticStorage<EmptySingleton<long long>> emptyInteger;

} // namespace

TypedValue<bool> * Singletons<bool>::empty() noexcept {
    return &emptyBoolean.object;
}

TypedValue<bool> * Singletons<bool>::find(bool x) noexcept {
    return &booleans[x ? 1 : 0].object;
}

TypedValue<long long> * Singletons<long long>::empty() noexcept {
    return &emptyInteger.object;
}

constinit StaticStorage<SingleValueSingleton<long long>> Singletons<long long>::sm_values[] = {
    {-1LL}, {0LL}, {1LL}, {2LL}, {3LL}, {4LL}, {5LL}, {6LL}, {7LL}};

} // namespace impl

constinit AttributeValue const AttributeValue::null;

namespace {

/// Makes the names; it is an object so that it runs at its place in the order.
struct TypeNames {
    TypeNames() {
        char const * const texts[] = {
            "Null",   "Boolean",    "Integer",      "String",       "Double",
            "UUID",   "URI",        "AbsoluteTime", "RelativeTime", "SimpleDateTime",
            "Binary", "Serialized", "AttributeMap", "Secured",      "ErrorInfo",
        };
        NameStorage * storage = typeNames;
        for (char const * text : texts) {
            ::new (&storage++->name) std::string(text);
        }
    }
} const makeTypeNames;

} // namespace

namespace impl {

// 3. Shared strings

namespace {

ValueHolder const defaultConstructedString(new RefCountedValueImpl<std::string>);
ValueHolder const emptyString(new RefCountedValueImpl<std::string>(ElementArg<std::string>("", 0)));

} // namespace

constinit ValueHolder const & ValueFactoryStatics<std::string>::sm_defaultConstructed =
    defaultConstructedString;
constinit ValueHolder const & ValueFactoryStatics<std::string>::sm_emptyString = emptyString;

} // namespace impl

// 4. and 5. Defaults and the empty map

namespace {

template <typename T>
typename impl::ValueTypeTraitsBase<T>::DefaultHolder const defaultHolder;

} // namespace

// clang-format off

#define VXATTRIBUTE_DEFAULT(T)                                                                     \
    namespace {                                                                                    \
    template <> impl::ValueTypeTraitsBase<T>::DefaultHolder const defaultHolder<T>{};              \
    }                                                                                              \
    template <> constinit impl::ValueTypeTraitsBase<T>::DefaultHolder const &                      \
        impl::ValueTypeTraitsBase<T>::sm_default = defaultHolder<T>

VXATTRIBUTE_DEFAULT(bool);
VXATTRIBUTE_DEFAULT(long long);
VXATTRIBUTE_DEFAULT(double);
VXATTRIBUTE_DEFAULT(std::string);
VXATTRIBUTE_DEFAULT(vxcore::Uuid);
VXATTRIBUTE_DEFAULT(vxcore::AbsoluteTime);
VXATTRIBUTE_DEFAULT(vxcore::RelativeTime);
VXATTRIBUTE_DEFAULT(vxcore::SimpleDateTime);
VXATTRIBUTE_DEFAULT(BinaryValue);
VXATTRIBUTE_DEFAULT(SerializedValue);
VXATTRIBUTE_DEFAULT(SecuredValue);
VXATTRIBUTE_DEFAULT(impl::ErrorInfoPtr);

AttributeMapBase::HolderPtr const
    AttributeMapBase::sm_pEmptyImpl(vxcore::make_ref_counted<MapHolder>());

VXATTRIBUTE_DEFAULT(vxuri::UriReference);
VXATTRIBUTE_DEFAULT(AttributeMap);

#undef VXATTRIBUTE_DEFAULT
// clang-format on

// 6. Ciphers

impl::SecuredValueCipherEaxAes128 const impl::cipherEaxAes128;
impl::SecuredValueCipherEaxAes256 const impl::cipherEaxAes256;
impl::SecuredValueCipherNull const impl::cipherNull;
impl::DefaultCipherProvider const impl::defaultCipherProvider;
impl::StrictCipherProvider const impl::strictCipherProvider;

// 7. Trace settings

vxcore::RefCountPtr<impl::TraceFormatterImpl const> const impl::defaultTraceSettings =
    vxcore::make_ref_counted<impl::TraceFormatterImpl>();

static TraceFormatter const defaultFormatter;
constinit TraceFormatter const & defaultTraceFormatter = defaultFormatter;

// 8. Names of the JSON form

vxcore::StaticInstance<vxcore::StringKey const> const
    impl::jsonSerializedKey(std::string_view("vxserialize"));
vxcore::StaticInstance<vxcore::StringKey const> const impl::jsonEmptyKey;

// 9. The registrar

namespace {

impl::ModuleRegistrar const registrar;

} // namespace

} // namespace vxattribute
