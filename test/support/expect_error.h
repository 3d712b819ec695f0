#pragma once

#include "vxcore/error_exception.h"

#include <gtest/gtest.h>

#include <string>

namespace vxtest {

/// Expects the action to raise a failure with this very code and this text, and returns it. If a
/// function is given, the failure must name it as its place.
template <typename Action>
vxcore::ErrorInfo::Ptr expect_error(Action action, vxcore::ErrorCode const & code,
                                    std::string const & text, char const * function = nullptr) {
    try {
        action();
        ADD_FAILURE() << "nothing was raised; expected: " << text;
    } catch (vxcore::ErrorException const & e) {
        EXPECT_EQ(e.info()->code(), code) << e.info()->code().name();
        EXPECT_EQ(e.what(), text);
        if (function != nullptr) {
            EXPECT_STREQ(e.info()->location().function().data(), function);
        }
        return e.info();
    }
    return nullptr;
}

} // namespace vxtest
