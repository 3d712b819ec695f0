#pragma once

// Included by the readers and writers; not for direct use.

#include "vxserialize/limits.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace vxserialize::impl {

/// Raises `error.vxserialize.depth`.
[[noreturn]] void throw_too_many_containers();

/// A stack of open lists and records, on top of one frame for the stream itself.
///
/// Every attribute map opens and closes two lists, so the first frames are inside the object and
/// only deep nesting allocates.
template <typename Frame>
class ContainerStack {
  public:
    ContainerStack() noexcept { *m_top = Frame(); }

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

    Frame & top() noexcept { return *m_top; }

    Frame const & top() const noexcept { return *m_top; }

    /// Open lists and records.
    unsigned int depth() const noexcept { return static_cast<unsigned int>(m_top - m_frames); }

    void push(Frame frame) {
        if (depth() + 1 == m_capacity) [[unlikely]] {
            grow();
        }
        *++m_top = frame;
    }

    /// Not for the frame of the stream.
    void pop() noexcept { --m_top; }

  private:
    static constexpr unsigned int sm_inlineFrames = 16;

    /// Doubles the capacity. At the limit it raises and changes nothing.
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

    Frame m_inline[sm_inlineFrames];
    std::unique_ptr<Frame[]> m_heap;
    Frame * m_frames = m_inline;
    Frame * m_top = m_inline;
    unsigned int m_capacity = sm_inlineFrames;
};

enum class EContainer : unsigned char { eStream, eList, eRecord };

/// The open lists and records of a writer, and the check that its calls nest and count.
class WriteContainers {
  public:
    /// Records that a primitive of the current element is written. Returns whether it is the first.
    bool element() noexcept {
        bool const first = !m_stack.top().written;
        m_stack.top().written = true;
        return first;
    }

    /// As `element()`, for callers without use for the result.
    void mark_element() noexcept { m_stack.top().written = true; }

    unsigned int depth() const noexcept { return m_stack.depth(); }

    /// A container is a primitive of the current element around it. Both return, as `element()`,
    /// whether it is the first.
    bool begin_list(unsigned int count) { return open({count, 0, EContainer::eList, false}); }

    bool begin_record() { return open({0, 0, EContainer::eRecord, false}); }

    void next_list_item(char const * function) {
        Frame & frame = m_stack.top();
        if (frame.kind != EContainer::eList || !frame.written) [[unlikely]] {
            fail_list_item(function);
        }
        ++frame.closed;
        frame.written = false;
    }

    /// Returns the number of elements.
    unsigned int end_list(char const * function);
    void end_record(char const * function);

  private:
    struct Frame {
        unsigned int count;  // announced
        unsigned int closed; // elements that next_list_item has closed
        EContainer kind;
        bool written; // a primitive of the current element
    };

    bool open(Frame frame) {
        m_stack.push(frame); // first: it may raise
        return !std::exchange((&m_stack.top())[-1].written, true);
    }

    [[noreturn]] void fail_list_item(char const * function) const;

    ContainerStack<Frame> m_stack;
};

/// The open lists and records of a reader.
///
/// One element of a list may be several primitives. `touched` says whether any of the current
/// element was read, so that `has_next()` moves on once for each element.
class ReadContainers {
  public:
    struct Frame {
        unsigned int remaining; // unfinished elements of a list, the current one included
        EContainer kind;
        bool counted; // the list announced its count
        bool touched;
    };

    Frame & top() noexcept { return m_stack.top(); }

    /// Records that a primitive of the current element is read.
    void element() noexcept { m_stack.top().touched = true; }

    /// Elements that the open containers still expect after their current ones. Each needs at least
    /// one byte, so that many of the remaining bytes cannot belong to a list opened now.
    unsigned long long pending() const noexcept { return m_pending + pending_in(m_stack.top()); }

    /// True in a list that was announced as empty.
    bool in_empty_list() const noexcept {
        Frame const & frame = m_stack.top();
        return frame.remaining == 0 && frame.kind == EContainer::eList && frame.counted;
    }

    void begin_list(unsigned int count, bool counted) {
        open({count, EContainer::eList, counted, false});
    }

    void begin_record() { open({0, EContainer::eRecord, false, false}); }

    /// `has_next()` of a form whose lists all announce their counts.
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

    /// Raises unless the innermost container is a list.
    void check_in_list(char const * function) const;

    /// Raises unless the innermost container is a record.
    void check_in_record(char const * function) const;

    void close() noexcept {
        m_stack.pop();
        m_pending -= pending_in(m_stack.top());
    }

  private:
    static unsigned int pending_in(Frame const & frame) noexcept {
        if (frame.kind == EContainer::eList) {
            return frame.remaining == 0 ? 0 : frame.remaining - 1;
        }
        return frame.kind == EContainer::eRecord ? 1 : 0; // its end mark
    }

    void open(Frame frame) {
        m_stack.top().touched = true;
        unsigned int const pending = pending_in(m_stack.top());
        m_stack.push(frame);
        m_pending += pending;
    }

    [[noreturn]] void fail_element(char const * function) const;

    ContainerStack<Frame> m_stack;
    unsigned long long m_pending = 0; // in all containers but the innermost
};

} // namespace vxserialize::impl
