#include "forms.h"

namespace vxtest {

namespace {

/// Copies elements from a reader to a writer.
struct Copier {
    Reader & from;
    Writer & to;
    bool severalInOne; ///< an element of a list may be several primitives

    void copy_run() {
        while (from.next_type() != eElement_None) {
            copy_element();
        }
    }

    void copy_all() {
        copy_run();
        if (code_of([&] { from.read_null(); }) != "error.vxserialize.data.truncated") {
            from.read_null(); // not the end: raises
        }
    }

    void copy_list() {
        unsigned int const count = from.begin_list();
        bool more = from.has_next();
        to.begin_list(count != 0 ? count : more);
        while (more) {
            severalInOne ? copy_run() : copy_element();
            more = from.has_next();
            if (more) {
                to.next_list_item();
            }
        }
        to.end_list();
    }

    void copy_element() {
        static void (*const primitives[])(Reader &, Writer &) = {
            [](Reader & r, Writer &) { r.read_null(); }, // nothing to read: raises
            [](Reader & r, Writer & w) { r.read_null(), w.write_null(); },
            [](Reader & r, Writer & w) { w << r.read_bool(); },
            [](Reader & r, Writer & w) { w << r.read_integer(); },
            [](Reader & r, Writer & w) { w << r.read_uint(); },
            [](Reader & r, Writer & w) { w << r.read_double(); },
            [](Reader & r, Writer & w) { w << r.read_string_key().value(); },
            [](Reader & r, Writer & w) { w << r.read_absolute_time(); },
            [](Reader & r, Writer & w) { w << r.read_relative_time(); },
            [](Reader & r, Writer & w) { w << r.read_uuid(); },
            [](Reader & r, Writer & w) {
                write_memory_list_as_binary(w, r.read_binary_as_memory_list());
            }};
        EElementKind const kind = from.next_type();
        if (kind == eElement_List) {
            copy_list();
        } else if (kind == eElement_Record) {
            from.begin_record(), to.begin_record();
            copy_run();
            from.end_record(), to.end_record();
        } else {
            primitives[kind](from, to);
        }
    }
};

} // namespace

std::string binary_to_text(std::string const & bytes, unsigned int segmentSize) {
    return write_text_form([&](Writer & writer) {
        MemoryReader reader(list_of(bytes, segmentSize));
        Copier{reader, writer, false}.copy_all();
        EXPECT_EQ(reader.bytes_left(), 0u);
    });
}

std::string text_to_binary(std::string const & text, unsigned int bufferSize) {
    return write_binary_form([&](Writer & writer) {
        auto const copy = [&](Reader & reader) { Copier{reader, writer, true}.copy_all(); };
        read_text_form(text, copy, bufferSize);
    });
}

std::string text_to_text(std::string const & text) {
    return write_text_form([&](Writer & writer) {
        read_text_form(text, [&](Reader & reader) { Copier{reader, writer, true}.copy_all(); });
    });
}

std::string code_of(std::function<void()> const & action) {
    try {
        action();
    } catch (vxcore::ErrorException const & e) {
        return e.info()->code().name();
    }
    return "";
}

} // namespace vxtest
