#pragma once

#include "vxfile/descriptor_sink.h"
#include "vxfile/file_descriptor_impl.h"

#include <optional>
#include <string>

namespace vxfile {

/// How a file is written.
struct AtomicFileOptions {
    /// Only the owner may read the file, even if it replaces one that others may read. The buffer
    /// is wiped.
    bool owner_only = false;

    bool replace = true; ///< if not, a file that is there already is left alone, and that is raised
};

/// A file that appears under its name at once and as a whole, or not at all.
///
/// The bytes go to a new file in the same folder. `commit()` puts it in the place of the old one,
/// if there is one. Whoever opens the name meanwhile has the old file. Without `commit()` the old
/// file stays as it is, and the destructor removes the new one.
///
/// After `commit()` the file and its name are on the disk: a power failure loses neither.
///
///     AtomicFile file("settings.json");
///     file.write(text);
///     file.commit();
///
/// A file that replaces another has the same permissions, and belongs to the user who runs the
/// program. The permissions of a first one are those of the process (`umask`). If the name is a
/// symbolic link, the file that it leads to is replaced, and the link stays. Anything but a plain
/// file, such as a device or a pipe, is written directly.
///
/// Errors. The constructor, and all functions that write, raise
/// - error.vxfile.write: the file cannot be written; also if it is there already and the caller may
///   not write it;
/// - error.vxfile.write.exists: there is one, and `replace` is not set;
/// - error.vxfile.write.folder: see `commit()`.
class VXFILE_API AtomicFile final : public vxcore::OutputSink {
  public:
    explicit AtomicFile(std::string path, AtomicFileOptions options = {});
    AtomicFile(AtomicFile const &) = delete;
    AtomicFile & operator=(AtomicFile const &) = delete;

    /// Removes the new file, unless it was committed.
    ~AtomicFile();

    /// Adds bytes, through a buffer of 64 KiB.
    void write(vxcore::ByteView bytes) override;

    /// Writes all bytes to the disk. Nothing may be written after this, and `commit()` can then
    /// fail only in naming the file. Call it to have several files ready before the first is named.
    void finish();

    /// Calls `finish()`, and puts the file in its place.
    ///
    /// @raises error.vxfile.write.folder: the file is in place, and stays. Its folder could not be
    ///         written to the disk.
    void commit();

    /// Whether others can read the bytes before `commit()`: the file is a device, say.
    bool is_direct() const noexcept { return m_newPath.empty(); }

    /// The number of bytes passed to the system so far.
    unsigned long long written() const noexcept { return m_sink->written(); }

    /// The open file, for questions about it such as `isatty`; -1 after `finish()`.
    int descriptor() const noexcept { return m_file.get(); }

  private:
    void open();
    void open_direct();
    void resolve_replaced();
    void open_new(unsigned int mode);
    void put_in_place();
    void remove_new() noexcept;
    [[noreturn]] void fail(int reason) const;

    std::string m_path;    // links resolved
    std::string m_newPath; // empty: written directly, or committed
    AtomicFileOptions const m_options;
    impl::FileDescriptor m_file;
    std::optional<DescriptorSink> m_sink; // made when the file is open
};

} // namespace vxfile
