#pragma once

// What the samples of the pages are compiled with: see tools/doc_samples.py.

#include "vxattribute/vxattribute.h"
#include "vxcore/vxcore.h"
#include "vxcrypto/vxcrypto.h"
#include "vxfile/vxfile.h"
#include "vxjson/vxjson.h"
#include "vxserialize/vxserialize.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

// A sample may show how a variable is made and stop there. An option of the target would not help:
// it comes before -Wall, with which clang turns the warning on again.
#pragma GCC diagnostic ignored "-Wunused-variable"
#pragma GCC diagnostic ignored "-Wunused-but-set-variable"

namespace doc_samples {

/// What a program is called with: its name.
inline char programName[] = "program";
inline char * arguments[] = {programName, nullptr};

/// The text without line feeds at its end.
inline std::string trimmed(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of('\n') + 1));
}

/// Collects what a sample writes to std::cout, instead of showing it.
class Output {
  public:
    Output() : m_shown(std::cout.rdbuf(m_text.rdbuf())) {}

    ~Output() { std::cout.rdbuf(m_shown); }

    Output(Output const &) = delete;
    Output & operator=(Output const &) = delete;

    /// What was written since the last call.
    std::string take() {
        std::string const text = trimmed(m_text.view());
        m_text.str("");
        return text;
    }

    /// The code of a failure that the page announces. Its message becomes the output of the sample.
    char const * code_of(vxcore::ErrorException const & failure) {
        m_text << failure.what() << '\n';
        return failure.info()->code().name();
    }

  private:
    std::ostringstream m_text;
    std::streambuf * m_shown;
};

} // namespace doc_samples
