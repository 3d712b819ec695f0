// All objects that live as long as the library, in the order of their construction. They are in one
// source because C++ does not define the order between sources. Objects that load-time code builds
// for programs are exported as references, which are constants: the linker may copy an exported
// object into the program before load-time code runs.
//
// 1. Constants, without load-time code: type ids, null, the singletons of booleans and integers.
// 2. Type names.
// 3. The two shared strings.
// 4. The shared empty map.
// 5. The defaults of the element types; that of maps uses the shared empty map.
// 6. Ciphers and their providers.
// 7. Trace settings, then `defaultTraceFormatter`.
// 8. The end of names, then the name of the JSON form.
// 9. The registrar, last: a registered library is complete.

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

/// Storage for a string that load-time code makes and that is never destroyed. All names are short
/// enough to need no memory of their own.
union NameStorage {
    constexpr NameStorage() noexcept : unused(0) {}

    ~NameStorage() {}

    char unused;
    std::string name;
};

constinit NameStorage typeNames[ValueTypeId::count];

// libstdc++ keeps up to 15 bytes in the string itself.
#define VX_ELEMENT_TYPE(number, Id, name, ...) static_assert(sizeof(name) <= 16);
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

} // namespace

constinit ValueTypeId const ValueTypeId::typeNull(eId_Null, &typeNames[eId_Null].name);
#define VX_ELEMENT_TYPE(number, Id, ...)                                                           \
    constinit ValueTypeId const ValueTypeId::type##Id(eId_##Id, &typeNames[number].name);
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

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

/// Makes the names. An object, so that this happens at its place in the order.
struct TypeNames {
    TypeNames() {
        char const * const texts[] = {
            "Null",
#define VX_ELEMENT_TYPE(number, Id, name, ...) name,
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
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

// 4. The shared empty map and 5. defaults

AttributeMapBase::HolderPtr const
    AttributeMapBase::sm_pEmptyImpl(vxcore::make_ref_counted<MapHolder>());

namespace impl {

namespace {

template <typename T>
typename ValueTypeTraitsBase<T>::DefaultHolder const defaultHolder;

} // namespace

// clang-format off
#define VX_ELEMENT_TYPE(number, Id, name, Type, ...)                                               \
    namespace {                                                                                    \
    template <> ValueTypeTraitsBase<Type>::DefaultHolder const defaultHolder<Type>{};              \
    }                                                                                              \
    template <> constinit ValueTypeTraitsBase<Type>::DefaultHolder const &                         \
        ValueTypeTraitsBase<Type>::sm_default = defaultHolder<Type>;
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
// clang-format on

} // namespace impl

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

// 8. Names

namespace {

/// Frees the names that were dropped, after those below are: vxcore, which keeps some for reuse,
/// may stay loaded.
struct EndOfNames {
    ~EndOfNames() { vxcore::impl::free_kept_tokens(); }
} const endOfNames;

} // namespace

vxcore::StaticInstance<vxcore::StringKey const> const
    impl::jsonSerializedKey(std::string_view("vxserialize"));

// 9. The registrar

namespace {

impl::ModuleRegistrar const registrar;

} // namespace

} // namespace vxattribute
