#include "vxattr/files/output.h"

#include <locale>
#include <unistd.h>

namespace vxattr {

Output::Output(std::string const & path, EAccess access) {
    bool const isSecret = access != EAccess::eAsUsual;
    if (path == "-") {
        m_standardOutput.emplace(
            STDOUT_FILENO, vxfile::DescriptorSinkOptions{"standard output", 1 << 16, isSecret});
    } else {
        m_file.emplace(path, vxfile::AtomicFileOptions{isSecret, access != EAccess::eNewOwnerOnly});
    }
}

bool Output::is_terminal() const {
    return ::isatty(m_file ? m_file->descriptor() : STDOUT_FILENO) != 0;
}

unsigned long long Output::written() const noexcept {
    return m_file ? m_file->written() : m_standardOutput->written();
}

void Output::write(vxcore::ByteView bytes) {
    if (m_file) {
        m_file->write(bytes);
    } else {
        m_standardOutput->write(bytes);
    }
}

void Output::write(vxserialize::MemoryListBase const & list) {
    for (auto segment = list.segment_read_iterator(); !segment.at_end(); ++segment) {
        write({segment->data(), segment->size()});
    }
}

void Output::finish() {
    if (m_file) {
        m_file->finish();
    } else {
        m_standardOutput->flush();
    }
}

void Output::commit() {
    if (m_file) {
        m_file->commit();
    } else {
        m_standardOutput->flush();
    }
}

OutputStream::OutputStream(Output & output, bool isVisible)
    : std::ostream(this), m_output(output), m_isVisible(isVisible) {
    std::ostream::imbue(std::locale::classic());
    exceptions(std::ios::badbit);
}

std::streambuf::int_type OutputStream::overflow(std::streambuf::int_type c) {
    char const byte = std::streambuf::traits_type::to_char_type(c);
    xsputn(&byte, 1);
    return c;
}

std::streamsize OutputStream::xsputn(char const * data, std::streamsize size) {
    std::string_view const text(data, static_cast<std::size_t>(size));
    if (m_isVisible) {
        m_text.clear();
        m_filter.append(text, m_text);
        m_output.write(m_text);
    } else {
        m_output.write(text);
    }
    return size;
}

void OutputStream::finish() {
    m_text.clear();
    m_filter.finish(m_text);
    m_output.write(m_text);
}

} // namespace vxattr
