#pragma once

#include "vxattribute/attribute_name.h"
#include "vxjson/itokenizer.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace vxattr {

/// Forwards the tokens of another tokenizer and notes what the value read from them will lack:
/// integers that no double holds, all but the last of equal names, and properties after a
/// "vxserialize" one.
class JsonLosses final : public vxjson::ITokenizer {
  public:
    explicit JsonLosses(vxjson::ITokenizer & tokens) : m_tokens(tokens) {}

    vxjson::EToken next() override;

    vxjson::StringSlice & text(vxjson::StringSlice & out) override { return m_tokens.text(out); }

    void error(vxcore::ErrorInfo::Ptr & out) override { m_tokens.error(out); }

    void position(vxjson::SourcePosition & out) override { m_tokens.position(out); }

    /// Descriptions of the first losses, each with its line and position; at most 10.
    std::vector<std::string> const & texts() const noexcept { return m_texts; }

    /// The number of all losses.
    unsigned long long count() const noexcept { return m_count; }

  private:
    static constexpr std::size_t sm_maxTexts = 10;

    struct Container {
        bool isObject;
        bool isElement;            // it lies in an array
        bool isNameDue = true;     // in an object, the next string is a name
        bool isDropped = false;    // all that follows in it is lost, and noted already
        bool isSerialized = false; // its first name is "vxserialize"
        std::unordered_set<vxattribute::AttributeName> names = {};
    };

    void take_punctuator();
    void begin_string();
    void take_characters();
    void end_string();
    void open(bool isObject);
    void close();
    void end_value() noexcept;
    void take_name();
    void take_number();
    void note(std::string const & text);

    vxjson::ITokenizer & m_tokens;
    std::vector<Container> m_open;
    bool m_isName = false; // the current string is one
    std::string m_name;
    vxjson::SourcePosition m_position; // of the last string, or of the number being noted
    std::vector<std::string> m_texts;
    unsigned long long m_count = 0;
};

} // namespace vxattr
