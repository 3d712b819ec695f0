"""Reads the memory of the program: texts, bytes, vectors and pointers, each within a limit.

Nothing here calls a function of the program, so all of it works on core files too. Whatever is wrong
with the memory raises; printers.py turns that into text.
"""

import codecs

import gdb

NO_LIMIT = 1 << 20  # where the user sets none: a broken object may have any size
MAX_COUNT = 1 << 32  # elements of a value


class Broken(Exception):
    """What was read cannot be a part of a living object."""


class Missing(Exception):
    """The debug information of a class is not there."""


def limit():
    """The most elements or characters to show: `print elements`, or `-elements` of the command."""
    if hasattr(gdb, "print_options"):  # gdb 13
        return gdb.print_options()["max_elements"] or NO_LIMIT
    return gdb.parameter("print elements") or NO_LIMIT


def max_depth():
    """How deep gdb itself shows values in values: `print max-depth`."""
    depth = gdb.parameter("print max-depth")
    return NO_LIMIT if depth is None or depth < 0 else depth


def type_named(name):
    """The type, complete. The libraries need debug information for types that programs only use
    through them."""
    try:
        found = gdb.lookup_type(name).strip_typedefs()
        if found.code != gdb.TYPE_CODE_STRUCT or found.fields():
            return found
    except gdb.error:
        pass
    raise Missing("no debug information for " + name)


def class_name(found):
    """The name of a type without `const` and typedefs; None if it is not a class."""
    return found.strip_typedefs().unqualified().tag


def object_at(address, name):
    """The object of that class at an address.

    As an element of an array: gdb would follow the vtable of what a pointer points to, and warn where
    that is broken or the class in it has no debug information.
    """
    return address.reinterpret_cast(type_named(name).array(0).pointer()).dereference()[0]


def pointee(pointer):
    """What a RefCountPtr points to; None for a null pointer."""
    address = pointer["m_object"]
    if int(address) == 0:
        return None
    return object_at(address, class_name(address.type.target()))


def readable(values):
    """What an iteration yields before it fails."""
    try:
        yield from values
    except Exception:
        return


def read(address, size):
    """At most `size` bytes; gdb raises if one of them cannot be read."""
    return bytes(gdb.selected_inferior().read_memory(address, size)) if size else b""


def vector(value):
    """The first element of a std::vector, as a pointer, and the number of elements."""
    begin = value["_M_impl"]["_M_start"]
    return begin, count(begin, value["_M_impl"]["_M_finish"], begin.type.target().sizeof)


def count(begin, end, size):
    """The number of elements of `size` bytes between two pointers."""
    distance = int(end) - int(begin)
    if distance < 0 or distance % size != 0 or distance // size >= MAX_COUNT:
        raise Broken("no run of elements from 0x%x to 0x%x" % (int(begin), int(end)))
    return distance // size


def string_parts(value):
    """Address and size of the characters of a std::string, or of another text of the libraries."""
    if class_name(value.type) == "vxcore::SourceString":
        return value["m_data"], int(value["m_size"])
    return value["_M_dataplus"]["_M_p"], int(value["_M_string_length"])


def text_of(value):
    """The characters of a text up to the limit, without quotes, and escaped as for C++."""
    address, size = string_parts(value)
    shown = min(size, limit())
    data = read(int(address), shown)
    # Of a text that is cut, the last character may be cut too: it is left out.
    decoder = codecs.getincrementaldecoder("utf-8")("surrogateescape")
    text = "".join(map(escaped, decoder.decode(data, shown == size)))
    return text, "..." if shown < size else ""


def escaped(character):
    """One character; what is not printed as itself comes as an escape sequence."""
    if character in '"\\':
        return "\\" + character
    if 0xDC80 <= ord(character) <= 0xDCFF:  # a byte that is not UTF-8
        return "\\x%02x" % (ord(character) - 0xDC00)
    return character if character.isprintable() else character.encode("unicode_escape").decode()


def plain(value):
    """A text without quotes."""
    return "".join(text_of(value))


def quoted(value):
    """A text in quotes; "..." follows if it is cut."""
    text, rest = text_of(value)
    return '"' + text + '"' + rest


def printable(text):
    """The text with escapes for what gdb's character set has not: gdb would raise for it."""
    charset = gdb.host_charset() if hasattr(gdb, "host_charset") else "ascii"
    try:
        return text.encode(charset, "backslashreplace").decode(charset)
    except LookupError:
        return text.encode("ascii", "backslashreplace").decode()


def hex_dump(runs, size):
    """Size and first bytes of a run of bytes. `runs` are pairs of address and size."""
    room = min(limit(), 32)
    digits = []
    for address, run in runs:
        digits += ["%02x" % byte for byte in read(int(address), min(run, room - len(digits)))]
        if len(digits) >= room:
            break
    if len(digits) < min(room, size):
        raise Broken("%d bytes, of which there are %d" % (size, len(digits)))
    text = counted(size, "byte")
    if digits:
        text += ": " + " ".join(digits)
    return text + (" ..." if len(digits) < size else "")


def counted(number, unit):
    """A number and its unit, which is in the plural if need be."""
    return "%d %s" % (number, unit if number == 1 else unit + "s")
