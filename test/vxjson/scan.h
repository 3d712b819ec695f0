#pragma once

#include "support/cases.h"

#include "vxcore/error_exception.h"
#include "vxcore/string_source.h"
#include "vxjson/tokenizer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>

/// Shows the tokens of a text.
namespace vxtest {

/// A text as a stream of unknown size. Reading at or after byte `failAt` raises.
class TextStream final : public vxcore::IReadStream {
  public:
    explicit TextStream(std::string_view text, std::size_t failAt = std::string::npos)
        : m_source(text), m_untilFailure(failAt) {}

    unsigned int read(void * buffer, unsigned int size) override {
        EXPECT_FALSE(m_ended) << "a read behind a short one";
        if (m_untilFailure < size) {
            throw std::runtime_error("line is down");
        }
        unsigned int const run = m_source.read(buffer, size);
        m_untilFailure -= run;
        m_ended = run < size;
        return run;
    }

    unsigned int skip(unsigned int) override { return 0; }

    long long size() const override { return -1; }

  private:
    vxcore::StringSource m_source;
    std::size_t m_untilFailure;
    bool m_ended = false;
};

/// Passes tokens on, so that a reader takes them by virtual calls only.
class ForwardingTokenizer final : public vxjson::ITokenizer {
  public:
    explicit ForwardingTokenizer(vxjson::ITokenizer & source) : m_source(source) {}

    vxjson::EToken next() override { return m_source.next(); }

    vxjson::StringSlice & text(vxjson::StringSlice & out) override { return m_source.text(out); }

    void error(vxcore::ErrorInfo::Ptr & out) override { m_source.error(out); }

    void position(vxjson::SourcePosition & out) override { m_source.position(out); }

  private:
    vxjson::ITokenizer & m_source;
};

/// Returns all tokens in one line, in the form that tokens.txt describes. Runs of a string are
/// joined.
inline std::string trace(vxjson::ITokenizer & tokenizer) {
    static char const * const marks[] = {"?",  "", ".", "",  "<", ">", "\"",
                                         "\"", "", " ", " ", " ", " ", ""};
    std::string line;
    for (vxjson::EToken token{}; token != vxjson::eToken_DocumentEnd;) {
        token = tokenizer.next();
        vxjson::StringSlice slice;
        line.append(tokenizer.text(slice).view()).append(marks[token]);
        if (token == vxjson::eToken_Error) {
            vxcore::ErrorInfo::Ptr error;
            tokenizer.error(error);
            return line + "! " + error->text() + " @" + *error->params().find_value("sourcePos");
        }
    }
    return line;
}

/// Returns the trace of a text. Expects the same trace from memory and through buffers of any size.
inline std::string scan(std::string const & text, vxjson::Tokenizer::Options options = {}) {
    // A block of exactly this size, so that sanitizers notice a read past its end.
    std::unique_ptr<char[]> const copy(new char[text.size()]);
    text.copy(copy.get(), text.size());
    vxjson::Tokenizer tokenizer(copy.get(), text.size(), options);
    std::string const result = trace(tokenizer);
    for (unsigned int const size : {0u, 2u, 3u, 7u, 64u}) {
        options.buffer_size = size;
        TextStream stream(text);
        vxjson::Tokenizer streaming(stream, options);
        EXPECT_EQ(trace(streaming), result) << text << " through " << size;
    }
    return result;
}

} // namespace vxtest
