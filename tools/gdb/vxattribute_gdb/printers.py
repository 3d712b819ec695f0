"""The bases of all printers. gdb calls `to_string`, `children` and `display_hint`; none of them
raises, so that one broken object never spoils a command that prints many."""

import gdb

from . import memory


def failure_text(failure):
    """What is printed in place of an object that cannot be read."""
    kind = "" if isinstance(failure, memory.Missing) else "broken or uninitialized: "
    return memory.printable("<%s%s>" % (kind, failure))


class Text:
    """Prints one line of text. `describe` makes it from the value, and may raise."""

    def __init__(self, value, describe):
        self.value = value
        self.describe = describe

    def to_string(self):
        try:
            return memory.printable(self.describe(self.value))
        except Exception as failure:
            return failure_text(failure)


def failed(failure):
    """A printer for a value whose printer cannot be made."""
    text = failure_text(failure)
    return Text(None, lambda _: text)


class List:
    """Prints a heading and elements, which gdb shows as a tree, cut at its own limits.

    A derived class has `heading()`, and `elements()`, which yields values or texts one at a time.
    Both may raise.
    """

    def __init__(self, value):
        self.value = value
        self.has_children = True

    def to_string(self):
        try:
            return memory.printable(self.heading())
        except Exception as failure:
            self.has_children = False
            return failure_text(failure)

    def children(self):
        if not self.has_children:
            return
        index = 0
        try:
            for element in self.elements():
                yield "[%d]" % index, element
                index += 1
        except Exception as failure:
            for text in self.mark(failure_text(failure)):
                yield "[%d]" % index, text
                index += 1

    def mark(self, text):
        """The last elements of a list that cannot be read to its end."""
        return [text]

    def display_hint(self):
        return "array"


def text_printer(describe):
    """A function that makes the printer of a value whose text is `describe(value)`."""
    return lambda value: Text(value, describe)
