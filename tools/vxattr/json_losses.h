#pragma once

#include "vxattribute/attribute_name.h"
#include "vxjson/itokenizer.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace vxattr {

/// Hands the tokens of another tokenizer on and notes what the value that is read from them will
/// not hold: integers that no double holds, all but the last of equal names, and properties behind
/// a "vxserialize" one.
class JsonLosses final : public vxjson::ITokenizer {
  public:
    explicit JsonLosses(vxjson::ITokenizer & tokens) : m_tokens(tokens) {}

    vxjson::EToken next() override;

    vxjson::StringSlice & text(vxjson::StringSlice & out) override { return m_tokens.text(out); }

    void error(vxcore::ErrorInfo::Ptr & out) override { m_tokens.error(out); }

    void position(vxjson::SourcePosition & out) override { m_tokens.position(out); }

    /// The first losses, each with its place.
    std::vector<std::string> const & texts() const noexcept { return m_texts; }

    unsigned long long count() const noexcept { return m_count; }

  private:
    static constexpr std::size_t sm_maxTexts = 10;

    struct Container {
        bool isObject;
        bool isElement;         // of an array
        bool isNameDue = true;  // in an object
        bool isDropped = false; // what follows is not looked at
        bool isSerialized = false;
        std::unordered_set<vxattribute::AttributeName> names = {}; // their hash has a secret
    };

    void open(bool isObject);
    void close();
    void end_value() noexcept;
    void take_name();
    void take_number();
    void note(std::string const & text);

    vxjson::ITokenizer & m_tokens;
    std::vector<Container> m_open;
    bool m_isName = false; // the string at hand is one
    std::string m_name;
    vxjson::SourcePosition m_namePosition;
    std::vector<std::string> m_texts;
    unsigned long long m_count = 0;
};

} // namespace vxattr
