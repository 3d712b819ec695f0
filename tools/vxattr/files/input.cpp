#include "vxattr/files/input.h"

#include "vxcore/text_conversion.h"

#include <cstdio>
#include <unistd.h>

namespace vxattr {

namespace {

constexpr unsigned long long mebibyte = 1 << 20;
constexpr unsigned long long shownFrom = 4 * mebibyte;

vxfile::InputFile open_input(std::string const & path, unsigned long long maxSize) {
    vxfile::InputFileOptions const options = {maxSize, "--max-size"};
    return path == "-" ? vxfile::InputFile(STDIN_FILENO, "standard input", options)
                       : vxfile::InputFile(path, options);
}

} // namespace

Input::Input(std::string const & path, unsigned long long maxSize)
    : InputFile(open_input(path, maxSize)), m_fileSize(size()) {
    if (::isatty(STDERR_FILENO) != 0) {
        m_nextShown = shownFrom;
    }
}

Input::~Input() {
    if (m_wasShown) {
        std::fputs("\r\033[K", stderr);
    }
}

void Input::received_more() {
    if (m_nextShown == 0 || received() < m_nextShown) {
        return;
    }
    m_nextShown = received() + mebibyte;
    m_wasShown = true;
    std::string text = "\rread " + vxcore::to_string(received() / mebibyte);
    if (m_fileSize > 0) {
        text += " of " + vxcore::to_string(static_cast<unsigned long long>(m_fileSize) / mebibyte);
    }
    std::fputs((text + " MiB").c_str(), stderr);
}

} // namespace vxattr
