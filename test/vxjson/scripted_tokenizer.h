#pragma once

#include "vxcore/error_composer.h"
#include "vxjson/itokenizer.h"

#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace vxtest {

/// Returns the tokens of a line, one word each:
/// - `Start`, `End`, `Unknown`;
/// - `"` and `"]` around a string, `<` and `>` around a name, `=text` (also empty) inside both;
/// - literals, numbers and punctuators as they are; `Nothing` is a punctuator without a text;
/// - `Error` and `Mute` fail with and without an error, `Throw` and `ThrowMute` raise likewise, and
///   `Memory` raises std::bad_alloc.
/// The last word is repeated. Token n is at line 1, position n.
class ScriptedTokenizer final : public vxjson::ITokenizer {
  public:
    explicit ScriptedTokenizer(std::string const & script) {
        std::istringstream words(script);
        m_words.assign(std::istream_iterator<std::string>(words), {});
    }

    vxjson::EToken next() override {
        m_at += m_at < m_words.size() ? 1 : 0;
        std::string const & word = m_words[m_at - 1];
        if (word == "Memory") {
            throw std::bad_alloc();
        }
        if (word.starts_with("Throw")) {
            throw std::runtime_error("thrown");
        }
        using namespace vxjson;
        static std::map<std::string, EToken> const marks = {
            {"Start", eToken_DocumentStart}, {"End", eToken_DocumentEnd},
            {"Error", eToken_Error},         {"Mute", eToken_Error},
            {"Unknown", eToken_Unknown},     {"Nothing", eToken_Punctuator},
            {"\"", eToken_StringBegin},      {"\"]", eToken_StringEnd},
            {"<", eToken_IdentifierBegin},   {">", eToken_IdentifierEnd}};
        auto const mark = marks.find(word);
        m_text = mark == marks.end() ? word.substr(word[0] == '=' ? 1 : 0) : "";
        return mark != marks.end()                        ? mark->second
               : word[0] == '='                           ? eToken_CharData
               : word[0] == 't'                           ? eToken_True
               : word[0] == 'f'                           ? eToken_False
               : word[0] == 'n'                           ? eToken_Null
               : word.find_first_of("{}[],:") < word.npos ? eToken_Punctuator
                                                          : eToken_Number;
    }

    vxjson::StringSlice & text(vxjson::StringSlice & out) override {
        return out = {m_text.data(), 0, static_cast<unsigned int>(m_text.size())};
    }

    void error(vxcore::ErrorInfo::Ptr & out) override {
        std::string const & word = m_words[m_at - 1];
        if (word == "Error" || word == "Throw") {
            out = vxcore::ErrorComposer("scan failed")
                      .create(vxcore::ErrorCode("error.scripted", true), {});
        }
    }

    void position(vxjson::SourcePosition & out) override {
        out = {vxuri::UriReference::parse(uri), 1, static_cast<unsigned int>(m_at), 7};
    }

    std::string uri;

  private:
    std::vector<std::string> m_words;
    std::size_t m_at = 0;
    std::string m_text;
};

} // namespace vxtest
