"""Printers of maps, and the walk through their tree."""

from . import parts
from .memory import Broken, counted, max_depth, object_at, readable, type_named
from .printers import List
from .representation import elements

MAX_HEIGHT = 92  # of an AVL tree whose size is a number of 64 bits
MAX_SORTED = 1000  # elements; of larger maps the first ones are shown as they are in memory
MAX_DEPTH = 256  # maps in maps, where the user lets gdb show any depth
MAX_SEARCHED = 1000  # elements and maps in which a map is looked for


def tree_elements(tree):
    """The pairs of name and value, in the order of the tree."""
    node_type = type_named("vxattribute::impl::TreeNode").pointer()
    link = tree["m_head"]["child"][0]
    above = []
    for left in range(int(tree["m_size"]), 0, -1):
        while int(link) != 0:
            above.append(link)
            if len(above) > MAX_HEIGHT:
                raise Broken("the tree of the map is too high")
            link = link["child"][0]
        if not above:
            raise Broken("the map lacks " + counted(left, "element"))
        node = above.pop()
        yield node.reinterpret_cast(node_type)["element"]
        link = node["child"][1]
    if above or int(link) != 0:
        raise Broken("the map has more elements than it counts")


def tree_of(holder):
    """The tree of a pointer to a holder."""
    return object_at(holder, "vxattribute::AttributeMapBase::MapHolder")["m_map"]


def nested_holders(value):
    """Pointers to the holders of the maps that are the elements of a value."""
    found = elements(value)
    if found is not None and found[0] == "AttributeMap":
        _, begin, number = found
        for index in range(min(number, MAX_SEARCHED)):
            yield begin[index]["m_pImpl"]["m_object"]


def never_ends(holder):
    """True if following the maps in a map would not end in reasonable time: the map is in itself,
    which only overwritten memory can make, or gdb may go deeper than its own stack is made for.

    Searches level by level, up to MAX_SEARCHED, and ignores what cannot be read.
    """
    level = [holder]
    seen = set()
    searched = 0
    for _ in range(MAX_DEPTH):
        below = []
        for outer in level:
            for element in readable(tree_elements(tree_of(outer))):
                for nested in readable(nested_holders(element["second"])):
                    if int(nested) == int(holder):
                        return True
                    if int(nested) not in seen:
                        seen.add(int(nested))
                        below.append(nested)
                searched += 1
                if searched + len(seen) >= MAX_SEARCHED:
                    return False
        level = below
    return bool(level) and max_depth() > MAX_DEPTH


def name_order(element):
    """What elements are sorted by: the text of the name. One that cannot be read comes first."""
    try:
        return parts.string_key(element["first"]["m_key"])
    except Exception:
        return ""


class Map(List):
    """AttributeMap, MutableAttributeMap, and the classes derived from them."""

    def heading(self):
        holder = self.value["m_pImpl"]["m_object"]
        size = int(tree_of(holder)["m_size"])
        if never_ends(holder):
            self.has_children = False
            return "AttributeMap of %d, nested without end" % size
        return "AttributeMap of %d" % size

    def elements(self):
        for element in self.in_order():
            yield element["first"]
            yield element["second"]

    def in_order(self):
        """Sorted by name, if the map is not too large for that."""
        tree = tree_of(self.value["m_pImpl"]["m_object"])
        if int(tree["m_size"]) > MAX_SORTED:
            yield from tree_elements(tree)
            return
        found = []
        failure = None
        try:
            for element in tree_elements(tree):
                found.append(element)
        except Exception as error:
            failure = error
        yield from sorted(found, key=name_order)
        if failure is not None:
            raise failure

    def mark(self, text):
        return ["...", text]

    def display_hint(self):
        return "map"
