#include "vxserialize/containers_impl.h"
#include "vxserialize/failures_internal.h"

namespace vxserialize::impl {

void throw_too_many_containers() {
    throw_too_deep("vxserialize::begin_list()");
}

void WriteContainers::fail_list_item(char const * function) const {
    if (m_stack.top().kind != EContainer::eList) {
        throw_usage(function, "a list item outside a list");
    }
    throw_usage(function, "a list item without an element before it");
}

void WriteContainers::fail_list_end(char const * function) const {
    Frame const & frame = m_stack.top();
    if (frame.kind != EContainer::eList) {
        throw_usage(function, "the end of a list where none is open");
    }
    if (frame.closed != 0 && !frame.written) {
        throw_usage(function, "a list item without an element behind it");
    }
    throw_usage(function, "a list with another number of elements than announced");
}

void WriteContainers::end_record(char const * function) {
    if (m_stack.top().kind != EContainer::eRecord) {
        throw_usage(function, "the end of a record where none is open");
    }
    m_stack.pop();
}

void ReadContainers::check_in_list(char const * function) const {
    if (m_stack.top().kind != EContainer::eList) {
        throw_usage(function, "has_next() outside a list");
    }
}

void ReadContainers::check_in_record(char const * function) const {
    if (m_stack.top().kind != EContainer::eRecord) {
        throw_usage(function, "the end of a record where none is open");
    }
}

void ReadContainers::fail_element(char const * function) const {
    check_in_list(function);
    throw_usage(function, "an element was read where a list has none");
}

} // namespace vxserialize::impl
