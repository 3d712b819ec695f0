"""Pretty printers for the libraries: docs/guide/debugging.md shows what they print.

    register(objfile, "vxcore")     the printers of the classes of one library

A printer reads memory only, so it works on core files. It takes the members of classes from the
debug information, under their names in the headers.
"""

import gdb.printing

from . import packages, parts, values
from .maps import Map
from .memory import class_name, pointee
from .printers import Text, failed, text_printer

POINTER = "vxcore::RefCountPtr<"

PRINTERS = {
    name: text_printer(describe) for name, describe in {**parts.TEXTS, **values.TEXTS}.items()
}
PRINTERS.update(
    {
        "vxattribute::Attribute": packages.Attribute,
        "vxattribute::AttributeMap": Map,
        "vxattribute::AttributeMapBase": Map,
        "vxattribute::AttributeNamePackage": packages.Package,
        "vxattribute::AttributeNamePackageSet": packages.PackageSet,
        "vxattribute::AttributeValue": values.attribute_value,
        "vxattribute::MutableAttributeMap": Map,
        "vxattribute::impl::TreeIterator<false>": packages.Iterator,
        "vxattribute::impl::TreeIterator<true>": packages.Iterator,
        "vxattribute::WritableAttributeMapRef": Map,
    }
)


class Printers(gdb.printing.PrettyPrinter):
    """The printers of one library, under its name in the commands for pretty printers."""

    def __init__(self, library):
        super().__init__(library)
        self.prefix = library + "::"
        names = sorted(name for name in PRINTERS if name.startswith(self.prefix))
        self.subprinters = [gdb.printing.SubPrettyPrinter(name) for name in names]
        self.by_name = {printer.name: printer for printer in self.subprinters}

    def __call__(self, value):
        name = class_name(value.type)
        if name is None:
            return None
        if self.prefix == "vxcore::" and name.startswith(POINTER):
            return pointer_printer(value)
        printer = self.by_name.get(name)
        return PRINTERS[name](value) if printer is not None and printer.enabled else None


def pointer_printer(value):
    """Prints a RefCountPtr as what it points to, if that has a printer."""
    printer = PRINTERS.get(class_name(value["m_object"].type.target()))
    if printer is None:
        return None
    try:
        found = pointee(value)
    except Exception as failure:
        return failed(failure)
    return Text(value, lambda _: "null") if found is None else printer(found)


def register(objfile, library):
    """Adds the printers of a library to an object file, or to gdb itself for None."""
    gdb.printing.register_pretty_printer(objfile, Printers(library), replace=True)
