#pragma once

#include "vxserialize/reader.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

/// Reads from a script of operations, such as "uint 12; list 3". Reports the counts of lists
/// unchanged.
///
/// A list ends only when `has_next()` returns false. A list that its user leaves earlier stays
/// open, as in a form with a stack of open lists. That matters for a count of 1; see
/// docs/decisions/0004.
class ScriptedReader final : public vxserialize::Reader {
  public:
    explicit ScriptedReader(std::string const & script) {
        for (std::size_t at = 0, end = 0; end != script.npos; at = end + 2) {
            end = script.find("; ", at);
            m_script.push_back(script.substr(at, end - at));
        }
    }

    /// Returns the number of operations not yet consumed.
    std::size_t rest() const { return m_script.size() - m_at; }

    vxserialize::EElementKind next_type() override {
        static std::pair<char const *, vxserialize::EElementKind> const kinds[] = {
            {"null", vxserialize::eElement_Null},      {"true", vxserialize::eElement_Boolean},
            {"false", vxserialize::eElement_Boolean},  {"int ", vxserialize::eElement_Integer},
            {"uint ", vxserialize::eElement_Unsigned}, {"double ", vxserialize::eElement_Double},
            {"string ", vxserialize::eElement_String}, {"key ", vxserialize::eElement_String},
            {"list ", vxserialize::eElement_List},     {"uuid ", vxserialize::eElement_Uuid}};
        for (auto const & [prefix, kind] : kinds) {
            if (m_at < m_script.size() && m_script[m_at].starts_with(prefix)) {
                return kind;
            }
        }
        return vxserialize::eElement_None;
    }

    void read_null() override { take("null"); }

    bool read_if_null() override {
        bool const isNull = next_type() == vxserialize::eElement_Null;
        m_at += isNull ? 1 : 0;
        return isNull;
    }

    bool read_bool() override { return m_script.at(m_at++) == "true"; }

    long long read_integer() override { return std::stoll(take("int ")); }

    unsigned int read_uint() override { return static_cast<unsigned>(std::stoul(take("uint "))); }

    double read_double() override { return std::stod(take("double ")); }

    void read_string(std::string & value) override { value = take("string "); }

    vxcore::StringKey read_string_key() override { return vxcore::StringKey(take("key ")); }

    vxcore::AbsoluteTime read_absolute_time() override { not_scripted(); }

    vxcore::RelativeTime read_relative_time() override { not_scripted(); }

    vxcore::Uuid read_uuid() override {
        vxcore::Uuid uuid;
        std::string const text = take("uuid ");
        if (!vxcore::Uuid::parse(text, uuid)) {
            throw std::runtime_error("no UUID: " + text);
        }
        return uuid;
    }

    vxserialize::ReadStreamPtr read_binary() override { not_scripted(); }

    unsigned int begin_list() override { return static_cast<unsigned>(std::stoul(take("list "))); }

    bool has_next() override {
        if (m_script.at(m_at) == "end") {
            ++m_at;
            return false;
        }
        m_at += m_script[m_at] == "next" ? 1 : 0;
        return true;
    }

    void begin_record() override { take("record"); }

    void end_record() override { take("close"); }

  private:
    [[noreturn]] static void not_scripted() { throw std::logic_error("not scripted"); }

    std::string take(std::string const & prefix) {
        std::string const & operation = m_script.at(m_at);
        if (!operation.starts_with(prefix)) {
            throw std::runtime_error("expected " + prefix + ", found " + operation);
        }
        ++m_at;
        return operation.substr(prefix.size());
    }

    std::vector<std::string> m_script;
    std::size_t m_at = 0;
};

} // namespace vxtest
