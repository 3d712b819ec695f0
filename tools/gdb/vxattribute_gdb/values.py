"""Printers of values and of the element types that vxattribute defines."""

import gdb

from . import parts
from .maps import Map
from .memory import class_name, counted, hex_dump, plain, pointee, quoted, string_parts
from .printers import List, Text, failed
from .representation import elements


class ValueList(List):
    """A value of no elements, or of several."""

    def __init__(self, name, begin, number):
        super().__init__(begin)
        self.name = name
        self.number = number

    def heading(self):
        return "%s list of %d" % (self.name, self.number)

    def elements(self):
        for index in range(self.number):
            element = self.value[index]
            yield with_printer(element) if self.name == "String" else element


def with_printer(value):
    """A std::string; as a plain text where the printers of the standard library are not loaded."""
    if gdb.default_visualizer(value) is not None:
        return value
    address, size = string_parts(value)
    return address.lazy_string(length=size)


def attribute_value(value):
    """The printer of an AttributeValue: it depends on what the value holds."""
    try:
        found = elements(value)
        if found is None:
            return Text(value, lambda _: "null")
        name, begin, number = found
        if number != 1:
            return ValueList(name, begin, number)
        if name == "AttributeMap":
            return Map(begin.dereference())
        return Text(begin.dereference(), lambda element: name + " " + element_text(element))
    except Exception as failure:
        return failed(failure)


def element_text(element):
    """One element that is not a map."""
    name = class_name(element.type)
    if name is None:
        return element.format_string()  # a boolean or a number
    if name.startswith("vxcore::RefCountPtr<"):
        return parts.error_info(pointee(element))
    return TEXTS.get(name, parts.TEXTS.get(name, quoted))(element)


def binary_value(value):
    return hex_dump([(value["m_data"], int(value["m_size"]))], int(value["m_size"]))


def serialized_value(value):
    """Type name and size. The payload belongs to another component, and may be a secret."""
    return "%s, %s" % (quoted(value["m_type"]), payload_size(value["m_list"]))


def secured_value(value):
    """What is not sealed, and the size of the rest: the cipher "NULL" leaves that in clear text."""
    key_id = value["m_keyId"]
    parts_of_value = (
        quoted(value["m_annotation"]),
        quoted(value["m_cipherId"]),
        plain(key_id["m_category"]),
        parts.uuid(key_id["m_instanceId"]),
        payload_size(value["m_ciphertext"]),
    )
    return "annotation %s, cipher %s, key id '%s':%s, %s sealed" % parts_of_value


def payload_size(pointer):
    payload = pointee(pointer)
    return counted(0 if payload is None else int(payload["m_size"]), "byte")


def attribute_name(value):
    return parts.string_key(value["m_key"])


TEXTS = {
    "vxattribute::AttributeName": attribute_name,
    "vxattribute::BinaryValue": binary_value,
    "vxattribute::SecuredValue": secured_value,
    "vxattribute::SerializedValue": serialized_value,
}
