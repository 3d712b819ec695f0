"""Printers of the libraries below vxattribute. Each function returns the text of one value."""

from . import times
from .memory import Broken, counted, hex_dump, limit, plain, pointee, quoted, vector
from .printers import failure_text


def uuid(value):
    data = value["m_data"]["_M_elems"]  # without an address in what a function has returned
    digits = bytes(int(data[i]) for i in range(16)).hex()
    return "-".join((digits[:8], digits[8:12], digits[12:16], digits[16:20], digits[20:]))


def absolute_time(value):
    return times.date_time(int(value["m_ticks"])) + "Z"


def relative_time(value):
    return times.span(int(value["m_ticks"]))


def simple_date_time(value):
    return times.date_time(int(value["m_ticks"]))


def string_key(value):
    token = value["m_token"]
    return quoted(token["text"]) if int(token) != 0 else '""'


def error_link(info):
    """One failure of a chain: code, text and place."""
    text = "%s: %s" % (plain(info["m_codeName"]), quoted(info["m_text"]))
    place = info["m_location"]
    if int(place["m_function"]["m_size"]) != 0:
        parts = (plain(place["m_function"]), plain(place["m_file"]), int(place["m_line"]))
        text += " at %s (%s:%d)" % parts
    return text


def error_links(value):
    """The texts of a failure and of those that caused it, which may be any number."""
    seen = set()
    while value is not None:
        if len(seen) == limit():
            yield "..."
            return
        if int(value.address) in seen:
            raise Broken("the chain of errors is a ring")
        seen.add(int(value.address))
        yield error_link(value)
        value = pointee(value["m_nested"])


def error_info(value):
    """A chain of failures, up to the first one that cannot be read."""
    links = []
    try:
        for text in error_links(value):
            links.append(text)
    except Exception as failure:
        links.append(failure_text(failure))
    return ", caused by ".join(links) or "null"


def error_exception(value):
    return error_info(pointee(value["m_info"]))


def memory_list(value):
    segment, number = vector(value["m_segments"])
    runs = ((segment[i]["m_data"], int(segment[i]["m_size"])) for i in range(number))
    return hex_dump(runs, int(value["m_size"]))


def uri_reference(value):
    data = pointee(value["m_data"])
    if data is None:
        raise Broken("no parse data")
    first = int(data["parts"]["_M_elems"][0])
    return "<undefined>" if first == 0xFFFFFFFF else quoted(data["text"])


def key(value):
    """The size alone: what a debugger prints ends up in logs and reports."""
    return "key of " + counted(int(value["m_size"]), "byte")


TEXTS = {
    "vxcore::AbsoluteTime": absolute_time,
    "vxcore::ErrorException": error_exception,
    "vxcore::ErrorInfo": error_info,
    "vxcore::RelativeTime": relative_time,
    "vxcore::SimpleDateTime": simple_date_time,
    "vxcore::SourceString": quoted,
    "vxcore::StringKey": string_key,
    "vxcore::Uuid": uuid,
    "vxcrypto::Key": key,
    "vxserialize::MemoryList": memory_list,
    "vxuri::UriReference": uri_reference,
}
