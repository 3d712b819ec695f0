#pragma once

// Included by the readers and writers; not for direct use.

#include "vxserialize/export.h"
#include "vxserialize/limits.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace vxserialize::impl {

/// Raises `error.vxserialize.depth`. Out of line, so that the templates below stay small.
[[noreturn]] VXSERIALIZE_API void throw_too_many_containers();

/// A stack of open lists and records, on top of one frame for the stream itself.
///
/// Every attribute map opens and closes two lists, so the first frames are inside the object and
/// only deep nesting allocates. Growing and copying copy the frames, so `Frame` is a small struct.
///
/// Heap memory, once needed, is kept until the stack is destroyed. Its capacity doubles, up to
/// `max_open_containers` frames beside that of the stream.
template <typename Frame>
class ContainerStack {
  public:
    /// No container is open. Only the frame of the stream is initialised.
    ContainerStack() noexcept { *m_top = Frame(); }

    /// A copy has frames of its own, as a copied reader needs.
    ///
    /// @raises std::bad_alloc: no memory for more than the inline frames.
    ContainerStack(ContainerStack const & other) : ContainerStack() { *this = other; }

    ContainerStack & operator=(ContainerStack const & other) {
        if (this != &other) {
            m_top = m_frames;
            while (m_capacity <= other.depth()) {
                grow();
            }
            std::copy(other.m_frames, other.m_top + 1, m_frames);
            m_top = m_frames + other.depth();
        }
        return *this;
    }

    /// The innermost open container, or the stream. The reference is valid until the next `push`,
    /// which may move the frames, or `pop`.
    Frame & top() noexcept { return *m_top; }

    Frame const & top() const noexcept { return *m_top; }

    /// The number of open lists and records, without the frame of the stream.
    unsigned int depth() const noexcept { return static_cast<unsigned int>(m_top - m_frames); }

    /// Opens a container. After a failure the stack is as it was.
    ///
    /// @raises error.vxserialize.depth: `max_open_containers` are open. std::bad_alloc: no memory.
    void push(Frame frame) {
        if (depth() + 1 == m_capacity) [[unlikely]] {
            grow();
        }
        *++m_top = frame;
    }

    /// Closes the innermost container, not the frame of the stream. Unchecked: callers look at
    /// `top()` first.
    void pop() noexcept { --m_top; }

  private:
    static constexpr unsigned int sm_inlineFrames = 16;

    /// Doubles the capacity. At the limit, or without memory, it raises and changes nothing.
    void grow() {
        if (m_capacity > max_open_containers) {
            throw_too_many_containers();
        }
        unsigned int const capacity = std::min(2 * m_capacity, max_open_containers + 1);
        std::unique_ptr<Frame[]> frames(new Frame[capacity]);
        std::copy(m_frames, m_top + 1, frames.get());
        m_top = frames.get() + depth();
        m_heap.swap(frames);
        m_frames = m_heap.get();
        m_capacity = capacity;
    }

    // `m_frames` is `m_inline` or, once that was too small, `m_heap`.
    Frame m_inline[sm_inlineFrames];
    std::unique_ptr<Frame[]> m_heap;
    Frame * m_frames = m_inline;
    Frame * m_top = m_inline;
    unsigned int m_capacity = sm_inlineFrames;
};

/// What a frame describes. The lowest frame is that of the stream.
enum class EContainer : unsigned char { eStream, eList, eRecord };

/// The open lists and records of a writer, and the check that its calls nest and count.
///
/// A writer calls the function for each event and writes the bytes itself. Calls that do not fit
/// raise `error.vxserialize.usage` and change nothing. `function` is a literal: the qualified name
/// of the writer's operation, for the location of the failure.
///
/// An element of a list is one or more primitives, separated from the next by `next_list_item()`.
/// So the number of elements is that of the separators, and one more if anything was written.
///
///     if (!m_containers.element()) { // before a primitive: a blank after the one before it
///         put(' ');
///     }
class VXSERIALIZE_API WriteContainers {
  public:
    /// Records that a primitive of the current element is written. Returns whether it is the first.
    bool element() noexcept {
        bool const first = !m_stack.top().written;
        m_stack.top().written = true;
        return first;
    }

    /// As `element()`, for callers without use for the result.
    void mark_element() noexcept { m_stack.top().written = true; }

    /// The number of open lists and records.
    unsigned int depth() const noexcept { return m_stack.depth(); }

    /// A container is a primitive of the current element around it. Both return, as `element()`,
    /// whether it is the first. The announced count is checked by `end_list()`.
    ///
    /// @raises error.vxserialize.depth, std::bad_alloc: as `ContainerStack::push`.
    bool begin_list(unsigned int count) { return open({count, 0, EContainer::eList, false}); }

    bool begin_record() { return open({0, 0, EContainer::eRecord, false}); }

    /// Ends an element of the innermost container.
    ///
    /// @raises error.vxserialize.usage: that is no list, or its current element is empty.
    void next_list_item(char const * function) {
        Frame & frame = m_stack.top();
        if (frame.kind != EContainer::eList || !frame.written) [[unlikely]] {
            fail_list_item(function);
        }
        ++frame.closed;
        frame.written = false;
    }

    /// Closes the innermost container. `end_list` returns the number of elements.
    ///
    /// @raises error.vxserialize.usage: it is no list or no record, the list has another number of
    ///         elements than announced, or a separator is the last thing in it.
    unsigned int end_list(char const * function) {
        Frame const frame = m_stack.top();
        // next_list_item() closes each element but the last. The number alone does not show a
        // separator without an element after it.
        unsigned int const elements = frame.closed + (frame.written ? 1 : 0);
        if (frame.kind != EContainer::eList || elements != frame.count ||
            (frame.closed != 0 && !frame.written)) [[unlikely]] {
            fail_list_end(function);
        }
        m_stack.pop();
        return elements;
    }

    void end_record(char const * function);

  private:
    /// One open container. Records use no count, the stream only `written`.
    struct Frame {
        unsigned int count;  // announced
        unsigned int closed; // elements that next_list_item has closed
        EContainer kind;
        bool written; // a primitive of the current element
    };

    /// Opens a container as a primitive of the one around it; returns whether it is the first
    /// there.
    bool open(Frame frame) {
        m_stack.push(frame); // first: it may raise
        return !std::exchange((&m_stack.top())[-1].written, true);
    }

    /// Each raises the failure of one function whose condition is not met.
    [[noreturn]] void fail_list_item(char const * function) const;
    [[noreturn]] void fail_list_end(char const * function) const; // of `end_list`

    ContainerStack<Frame> m_stack;
};

/// The open lists and records of a reader.
///
/// One element of a list may be several primitives. `touched` says whether any of the current
/// element was read, so that `has_next()` moves on once for each element.
///
/// A form whose lists all announce their counts uses `has_next_counted()`. A form that marks the
/// end of a list checks `top()` itself, before and after the mark. `function` is as above.
class VXSERIALIZE_API ReadContainers {
  public:
    /// One open container. In the frame of the stream, and in that of a record, only `touched`
    /// changes.
    struct Frame {
        unsigned int remaining; // unfinished elements of a list, the current one included
        EContainer kind;
        bool counted; // the list announced its count
        bool touched;
    };

    /// The innermost container; valid until the next one is opened or this one is closed.
    Frame & top() noexcept { return m_stack.top(); }

    /// Records that a primitive of the current element is read. `begin_list` and `begin_record` do
    /// so themselves.
    void element() noexcept { m_stack.top().touched = true; }

    /// Elements that the open containers still expect after their current ones. Each needs at least
    /// one byte, so that many of the remaining bytes cannot belong to a list opened now. O(1): the
    /// sum of the outer containers is kept up to date.
    unsigned long long pending() const noexcept { return m_pending + pending_in(m_stack.top()); }

    /// True in a list that was announced as empty. The next element, if any, is outside of it:
    /// `next_type()` must not show it.
    bool in_empty_list() const noexcept {
        Frame const & frame = m_stack.top();
        return frame.remaining == 0 && frame.kind == EContainer::eList && frame.counted;
    }

    /// Opens a list or record, inside the current element.
    ///
    /// @param count    Elements; 0 if the list did not announce them (`counted` is false).
    /// @raises error.vxserialize.depth, std::bad_alloc: as `ContainerStack::push`.
    void begin_list(unsigned int count, bool counted) {
        open({count, EContainer::eList, counted, false});
    }

    void begin_record() { open({0, EContainer::eRecord, false, false}); }

    /// `has_next()` of a form whose lists all announce their counts: closes the list after its last
    /// element.
    ///
    /// @raises error.vxserialize.usage: the innermost container is no list, or more was read in it
    ///         than it has elements.
    bool has_next_counted(char const * function) {
        Frame & frame = m_stack.top();
        if (frame.touched || frame.kind != EContainer::eList) {
            if (frame.kind != EContainer::eList || frame.remaining == 0) [[unlikely]] {
                fail_element(function);
            }
            --frame.remaining;
            frame.touched = false;
        }
        if (frame.remaining != 0) {
            return true;
        }
        close();
        return false;
    }

    /// Both check what the innermost container is.
    ///
    /// @raises error.vxserialize.usage: it is no list, or no record.
    void check_in_list(char const * function) const;
    void check_in_record(char const * function) const;

    /// Leaves the innermost container, which is not the stream.
    void close() noexcept {
        m_stack.pop();
        m_pending -= pending_in(m_stack.top());
    }

  private:
    /// Elements that one container expects after its current one. The mark at the end of a record
    /// counts as one.
    static unsigned int pending_in(Frame const & frame) noexcept {
        if (frame.kind == EContainer::eList) {
            return frame.remaining == 0 ? 0 : frame.remaining - 1;
        }
        return frame.kind == EContainer::eRecord ? 1 : 0; // its end mark
    }

    /// Opens a container as a primitive of the one around it. What that still expects is added to
    /// `m_pending` after the push, which may raise.
    void open(Frame frame) {
        m_stack.top().touched = true;
        unsigned int const pending = pending_in(m_stack.top());
        m_stack.push(frame);
        m_pending += pending;
    }

    /// Raises the failure of `has_next_counted` whose condition is not met.
    [[noreturn]] void fail_element(char const * function) const;

    ContainerStack<Frame> m_stack;
    unsigned long long m_pending = 0; // in all containers but the innermost
};

} // namespace vxserialize::impl
