#include "vxattr/visible_text.h"

#include "vxcore/hex.h"
#include "vxcore/streamers.h"
#include "vxcore/text_conversion.h"

namespace vxattr {

namespace {

constexpr unsigned int maxShown = 256; // bytes of a name or path

std::string left_out(std::size_t size) {
    return "...(+" + vxcore::to_string(static_cast<unsigned long long>(size)) + ')';
}

void append_escape(unsigned char byte, std::string & out) {
    out += "\\x";
    out += vxcore::hex_digit(byte >> 4);
    out += vxcore::hex_digit(byte);
}

} // namespace

void VisibleText::append(std::string_view text, std::string & out) {
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (m_isHeld) {
            m_isHeld = false;
            if (byte >= 0x80 && byte < 0xA0) {
                append_escape(0xC2, out);
                append_escape(byte, out);
                continue;
            }
            out += '\xC2';
        }
        if (byte == 0xC2) {
            m_isHeld = true;
        } else if (byte == 0x7F || (byte < 0x20 && !(m_keepsLines && (c == '\n' || c == '\t')))) {
            append_escape(byte, out);
        } else {
            out += c;
        }
    }
}

void VisibleText::finish(std::string & out) {
    if (m_isHeld) {
        m_isHeld = false;
        out += '\xC2';
    }
}

std::string quoted_name(std::string_view name) {
    unsigned int const size = vxcore::utf8_cut(name, maxShown);
    std::string const mark = size < name.size() ? left_out(name.size() - size) : "";
    return '\'' + visible(name.substr(0, size)) + '\'' + mark;
}

std::string shown_path(std::string_view path) {
    if (path.size() <= maxShown) {
        return visible(path);
    }
    std::string_view const start = path.substr(0, vxcore::utf8_cut(path, maxShown / 2));
    std::string_view end = path.substr(path.size() - maxShown / 2);
    while (!end.empty() && (static_cast<unsigned char>(end[0]) & 0xC0) == 0x80) {
        end.remove_prefix(1); // continues a sequence that was cut
    }
    return visible(start) + left_out(path.size() - start.size() - end.size()) + visible(end);
}

std::string visible(std::string_view text) {
    std::string out;
    VisibleText filter(false);
    filter.append(text, out);
    filter.finish(out);
    return out;
}

} // namespace vxattr
