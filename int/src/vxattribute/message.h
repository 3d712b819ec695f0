#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package_set.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxserialize/frame.h"

#include <cstddef>
#include <optional>

/// Maps as messages in a stream that has no boundaries of its own, such as a socket, a pipe or a
/// log file. Each message is a frame (`vxserialize/frame.h`) of one map in the binary form.
namespace vxattribute {

/// Writes the map as one message.
///
///     write_message(sink, make_map({{"op", "add"}, {"id", 7}}), packages);
///
/// A message decodes on its own: it refers to the packages that it uses, so the reader may have
/// missed or refused any before it. That costs about 20 bytes for each package in use.
///
/// @param packages  Code the names; null: names are written as they are.
/// @raises error.vxserialize.depth: maps nest deeper than `vxserialize::max_open_containers`.
///         std::length_error: more than 2^32 - 1 bytes. Nothing is written in these cases. What the
///         sink raises passes through.
VXATTRIBUTE_API void write_message(vxcore::OutputSink & sink, AttributeMapBase const & map,
                                   AttributeNamePackageSet::Ptr const & packages = nullptr,
                                   StreamOptions const & options = {});

/// Reads messages from a stream whose bytes may come in any pieces.
///
///     MessageReader messages(packages);
///     while (std::size_t const size = receive(buffer)) {
///         messages.feed({buffer, size});
///         while (std::optional<AttributeMap> const message = messages.next()) {
///             handle(*message);
///         }
///     }
///     messages.finish(); // raises if the last message is not complete
///
/// Errors. A message that `next()` refuses is taken nevertheless: the next call goes on with the
/// message after it. What else a program may do depends on the code:
/// - error.vxattribute.name.decoder.packageRef.unknown: the parameter `packageId` is the id of a
///   package that the message needs. Keep a copy of `last_bytes()`, ask the peer for the package,
///   call `set_packages`, and read the bytes with `map_from_bytes`.
/// - Any other: the peer is faulty or hostile. Most programs close the connection.
///
/// Memory. That of vxserialize::FrameReader, and the map that is returned.
///
/// Threads. One reader belongs to one thread at a time.
class VXATTRIBUTE_API MessageReader {
  public:
    /// `max_size` is the most bytes of one message.
    using Options = vxserialize::FrameReader::Options;

    /// @param packages  That the names of messages may be coded with; null: none.
    explicit MessageReader(AttributeNamePackageSet::Ptr packages = nullptr,
                           Options const & options = Options());

    /// Replaces the packages for all messages that `next` takes from now on.
    void set_packages(AttributeNamePackageSet::Ptr packages);

    /// Adds the next bytes of the stream, which are copied.
    ///
    /// @raises std::bad_alloc: no memory; nothing was added.
    void feed(vxcore::ByteView bytes) { m_frames.feed(bytes); }

    /// Takes the next message. Returns nothing if it is not complete yet.
    ///
    /// @raises error.vxattribute.name.decoder.packageRef.unknown: it needs a package that the
    ///         reader does not have.
    ///         error.vxserialize.data.size: it is larger than the limit.
    ///         What `map_from_bytes` raises: it is damaged, or not one map.
    std::optional<AttributeMap> next();

    /// The bytes of the message that `next` took last, returned or refused; none after `feed`, and
    /// for a message above the limit.
    vxcore::ByteView last_bytes() const noexcept VXCORE_LIFETIMEBOUND { return m_frames.last(); }

    /// Call this at the end of the stream: it must not end inside a message.
    ///
    /// @raises error.vxserialize.data.truncated: it does.
    void finish() const { m_frames.finish(); }

    /// The number of bytes that were fed and not taken.
    std::size_t buffered() const noexcept { return m_frames.buffered(); }

  private:
    AttributeNamePackageSet::Ptr m_packages; // never null
    vxserialize::FrameReader m_frames;
};

} // namespace vxattribute
