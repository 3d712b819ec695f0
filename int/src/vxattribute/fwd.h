#pragma once

/// Forward declarations of the classes of the library.

namespace vxattribute {

class Attribute;
class AttributeMap;
class AttributeMapBase;
class AttributeName;
class AttributeNameDecoder;
class AttributeNameDecoderFunctor;
class AttributeNameEncoder;
class AttributeNameEncoderFunctor;
class AttributeNamePackage;
class AttributeNamePackageSet;
class AttributeValue;
class BinaryValue;
class IAttributeNameDecoder;
class IAttributeNameEncoder;
class KeyRing;
class MessageReader;
class MutableAttributeMap;
class SecuredValue;
class SerializedValue;
class TraceFormatter;
class ValueTypeId;
class WritableAttributeMapRef;

namespace impl {

struct NullValueType;
class ValueBase;
class ValueHolder;
template <typename T>
class MultiValueWriter;
template <typename T>
class TypedValue;
template <typename T>
struct ValueFactory;
template <typename T>
struct ValueTypeTraits;

} // namespace impl
} // namespace vxattribute
