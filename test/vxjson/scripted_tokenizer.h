#pragma once

#include "vxcore/error_composer.h"
#include "vxjson/itokenizer.h"

#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

/// Gives tokens that a line tells, one word each: `Start`, `End`, `Unknown`, `"` and `"]` around a
/// string, `<` and `>` around a name, `=text` (also empty) inside both, literals, numbers and
/// punctuators as they are. `Error` fails with an error, `Mute` without one, `Throw` and
/// `ThrowMute` raise likewise; `Nothing` is a punctuator without a text, `Memory` raises
/// std::bad_alloc. The last word is given again. Token n is at line 1, position n.
class ScriptedTokenizer final : public vxjson::ITokenizer {
  public:
    explicit ScriptedTokenizer(std::string const & script) {
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            m_words.push_back(word);
        }
    }

    vxjson::EToken next() override {
        m_at += m_at < m_words.size() ? 1 : 0;
        std::string const & word = m_words[m_at - 1];
        m_text.clear();
        if (word == "Memory") {
            throw std::bad_alloc();
        }
        if (word.starts_with("Throw")) {
            throw std::runtime_error("thrown");
        }
        static std::vector<std::pair<std::string, vxjson::EToken>> const marks = {
            {"Start", vxjson::eToken_DocumentStart}, {"End", vxjson::eToken_DocumentEnd},
            {"Unknown", vxjson::eToken_Unknown},     {"\"", vxjson::eToken_StringBegin},
            {"\"]", vxjson::eToken_StringEnd},       {"<", vxjson::eToken_IdentifierBegin},
            {">", vxjson::eToken_IdentifierEnd},     {"Error", vxjson::eToken_Error},
            {"Mute", vxjson::eToken_Error},          {"Nothing", vxjson::eToken_Punctuator}};
        for (auto const & [mark, token] : marks) {
            if (word == mark) {
                return token;
            }
        }
        m_text = word.substr(word[0] == '=' ? 1 : 0);
        switch (word[0]) {
        case '=':
            return vxjson::eToken_CharData;
        case 't':
            return vxjson::eToken_True;
        case 'f':
            return vxjson::eToken_False;
        case 'n':
            return vxjson::eToken_Null;
        default:
            return word.find_first_of("{}[],:") == 0 ? vxjson::eToken_Punctuator
                                                     : vxjson::eToken_Number;
        }
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
