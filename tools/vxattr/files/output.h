#pragma once

#include "vxattr/visible_text.h"
#include "vxjson/text_writer.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/text_writer.h"

#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vxattr {

/// A file being written, or standard output for "-".
///
/// The text goes to a new file in the same folder, which replaces the old one in `commit()`. A
/// failure before that leaves the old file as it was and removes the new one. Anything but a
/// regular file, such as a device, is written directly.
///
/// When `commit()` returns, the file and its name are on the disk.
///
/// Errors. Raises Failure: the file cannot be written.
class Output final : public vxserialize::TextWriter::ITextTarget,
                     public vxjson::TextWriter::ITextTarget {
  public:
    enum class EAccess {
        eAsUsual,
        eOwnerOnly,
        eNewOwnerOnly, ///< as eOwnerOnly, and an existing file is never replaced
    };

    explicit Output(std::string path, EAccess access = EAccess::eAsUsual);
    Output(Output const &) = delete;
    Output & operator=(Output const &) = delete;
    ~Output();

    bool is_terminal() const;

    /// Whether others can read the bytes before `commit()`.
    bool is_direct() const noexcept { return m_newPath.empty(); }

    /// The number of bytes passed to the system so far.
    unsigned long long written() const noexcept { return m_written; }

    void write_char(char c) override { write({&c, 1}); }

    void write_data(char const * data, unsigned int size) override { write({data, size}); }

    void write(std::string_view text);
    void write(vxserialize::MemoryListBase const & list);

    /// Writes all bytes to the disk. After this, `commit()` can fail only in giving the file its
    /// name.
    void finish();

    /// Gives the file its name. It keeps the name even when writing the folder to the disk then
    /// fails.
    void commit();

  private:
    static constexpr std::size_t sm_bufferSize = 1 << 16;

    /// Checks that the file to be replaced may be written, and follows links to it.
    void resolve_replaced();
    void open_new();
    void flush();
    void send(std::string_view text);
    [[noreturn]] void fail(char const * what) const;

    std::string m_path;    // links resolved
    std::string m_newPath; // empty: written directly
    EAccess const m_access;
    int m_file = -1;
    unsigned long long m_written = 0;
    std::size_t m_size = 0;
    std::unique_ptr<char[]> const m_buffer;
};

/// An output as a standard stream, in the classic locale.
class OutputStream final : private std::streambuf, public std::ostream {
  public:
    /// @param isVisible  Shows control bytes as escapes.
    OutputStream(Output & output, bool isVisible);

    /// Passes the last bytes on. The destructor does not.
    void finish();

  private:
    std::streambuf::int_type overflow(std::streambuf::int_type c) override;
    std::streamsize xsputn(char const * data, std::streamsize size) override;

    Output & m_output;
    bool const m_isVisible;
    VisibleText m_filter{true};
    std::string m_text;
};

} // namespace vxattr
