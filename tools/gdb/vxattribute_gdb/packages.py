"""Printers of attributes, iterators, packages of names, and sets of packages."""

from . import parts
from .memory import object_at, vector
from .printers import List


class Attribute(List):
    """A name with its value, as a map of one."""

    def heading(self):
        return "Attribute"

    def elements(self):
        yield self.value["m_name"]
        yield self.value["m_value"]

    def display_hint(self):
        return "map"


class Iterator(List):
    """The element of a map to which an iterator refers. A node that is in use has a parent."""

    def heading(self):
        return "end" if self.is_end() else "element"

    def elements(self):
        if not self.is_end():
            element = object_at(self.value["m_links"], "vxattribute::impl::TreeNode")["element"]
            yield element["first"]
            yield element["second"]

    def is_end(self):
        return int(object_at(self.value["m_links"], "vxattribute::impl::TreeLinks")["up"]) == 0

    def display_hint(self):
        return "map"


class Package(List):
    """An AttributeNamePackage: its id and its names."""

    def heading(self):
        _, number = vector(self.value["m_names"])
        return "AttributeNamePackage %s of %d" % (parts.uuid(self.value["m_id"]), number)

    def elements(self):
        name, number = vector(self.value["m_names"])
        for index in range(number):
            yield name[index]


class PackageSet(List):
    """An AttributeNamePackageSet, and what is in it."""

    def heading(self):
        _, number = vector(self.value["m_packages"])
        return "AttributeNamePackageSet of %d" % number

    def elements(self):
        package, number = vector(self.value["m_packages"])
        for index in range(number):
            yield package[index]
