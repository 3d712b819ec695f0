#pragma once

#include "vxcore/read_stream.h"
#include "vxfile/file_descriptor_impl.h"
#include "vxserialize/memory_list.h"

#include <memory>
#include <string>
#include <string_view>

namespace vxfile {

/// Limits of an InputFile.
struct InputFileOptions {
    unsigned long long max_size = 1ull << 30; ///< in bytes; a file with more is refused

    /// What the message about a file that is too large calls that limit.
    std::string max_size_name = "max_size";
};

/// A file that is read once, from start to end, through a buffer of 64 KiB. It need not be a plain
/// file: pipes and devices work too.
///
///     InputFile file("settings.bin");
///     vxserialize::MemoryReader reader(file.read_all());
///
/// Errors. The functions that read raise, besides std::bad_alloc,
/// - error.vxfile.read: the system cannot read the file;
/// - error.vxfile.size: the file has more than `max_size` bytes. Of a plain file the size is known,
///   so it is refused at the first read.
///
/// One object belongs to one thread at a time.
class VXFILE_API InputFile : public vxcore::IReadStream {
  public:
    /// Opens the file.
    ///
    /// @raises error.vxfile.open
    explicit InputFile(std::string path, InputFileOptions options = {});

    /// Reads from an open file, such as standard input, from its present position on.
    ///
    /// @param descriptor  Stays open. Must outlive this object.
    /// @param name        What messages call the file.
    /// @raises error.vxfile.open: it is no open file.
    InputFile(int descriptor, std::string name, InputFileOptions options = {});

    /// The source may only be destroyed afterwards.
    InputFile(InputFile && other) noexcept;
    InputFile & operator=(InputFile &&) = delete;

    /// Closes a file that this object opened.
    virtual ~InputFile();

    /// The path, or the name that was given.
    std::string const & name() const noexcept { return m_name; }

    /// The number of bytes that came from the file so far.
    unsigned long long received() const noexcept { return m_received; }

    /// The next 4096 bytes, or all that are left if there are fewer. They stay unread.
    ///
    /// @keeps  Until the next call of a function that reads.
    std::string_view head();

    /// As in IReadStream.
    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;

    /// The bytes left in a plain file; -1 for any other.
    long long size() const override;

    /// Reads all bytes that are left.
    ///
    /// @raises std::length_error: they are more than 2^32 - 1.
    vxcore::RefCountPtr<vxserialize::MemoryList> read_all();

    /// The same as a string, of any size.
    std::string read_all_text();

  protected:
    /// Called each time after bytes came from the file, to show progress. Does nothing itself.
    virtual void received_more();

  private:
    static constexpr std::size_t sm_bufferSize = 1 << 16;
    static constexpr std::size_t sm_headSize = 4096;

    InputFile(impl::FileDescriptor file, std::string && name, InputFileOptions && options);

    /// Reads more bytes after the rest in the buffer, which must have room. Returns false at the
    /// end of the file.
    bool fill();

    std::string m_name;
    impl::FileDescriptor m_file;
    InputFileOptions m_options;
    long long m_fileSize = -1;         // bytes left at the start; -1: unknown
    unsigned long long m_received = 0; // bytes
    std::unique_ptr<char[]> m_buffer;
    std::string_view m_rest; // bytes in the buffer that are not read yet
};

} // namespace vxfile
