#pragma once

#include "vxattr/visible_text.h"
#include "vxfile/atomic_file.h"
#include "vxserialize/memory_list.h"

#include <optional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vxattr {

/// A file being written, or standard output for "-". A file is replaced in `commit()`, as
/// vxfile::AtomicFile describes.
class Output final : public vxcore::OutputSink {
  public:
    enum class EAccess {
        eAsUsual,
        eOwnerOnly,
        eNewOwnerOnly, ///< as eOwnerOnly, and an existing file is never replaced
    };

    explicit Output(std::string const & path, EAccess access = EAccess::eAsUsual);

    bool is_terminal() const;

    /// Whether others can read the bytes before `commit()`.
    bool is_direct() const noexcept { return !m_file || m_file->is_direct(); }

    /// The number of bytes passed to the system so far.
    unsigned long long written() const noexcept;

    void write(vxcore::ByteView bytes) override;

    void write(char const * text) { write(std::string_view(text)); }

    void write(vxserialize::MemoryListBase const & list);

    /// Writes all bytes to the disk. After this, `commit()` can fail only in giving the file its
    /// name.
    void finish();

    /// Gives the file its name. It keeps the name even when writing the folder to the disk then
    /// fails.
    void commit();

  private:
    std::optional<vxfile::AtomicFile> m_file;
    std::optional<vxfile::DescriptorSink> m_standardOutput; // if there is no file
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
