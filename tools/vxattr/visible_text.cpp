#include "visible_text.h"

namespace vxattr {

namespace {

void append_escape(unsigned char byte, std::string & out) {
    constexpr char digits[] = "0123456789abcdef";
    out += "\\x";
    out += digits[byte >> 4];
    out += digits[byte & 15];
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

std::string visible(std::string_view text) {
    std::string out;
    VisibleText filter(false);
    filter.append(text, out);
    filter.finish(out);
    return out;
}

} // namespace vxattr
