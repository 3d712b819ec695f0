#pragma once

#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vxtest {

/// Writes down the operations it is asked for, one text each, such as "uint 12" or "list 3".
class RecordingWriter final : public vxserialize::Writer {
  public:
    std::vector<std::string> operations;

    void write_null() override { add("null"); }

    void write_bool(bool value) override { add(value ? "true" : "false"); }

    void write_integer(long long value) override { add("int " + std::to_string(value)); }

    void write_uint(unsigned int value) override { add("uint " + std::to_string(value)); }

    void write_double(double value) override { add("double " + std::to_string(value)); }

    void write_string(char const * data, unsigned int size) override {
        add("string " + std::string(data, size));
    }

    void write_string_key(vxcore::StringKey const & key) override { add("key " + key.value()); }

    void write_absolute_time(vxcore::AbsoluteTime value) override {
        add("absolute " + std::to_string(value.ticks()));
    }

    void write_relative_time(vxcore::RelativeTime value) override {
        add("relative " + std::to_string(value.ticks()));
    }

    void write_uuid(vxcore::Uuid const & value) override { add("uuid " + value.as_string(1)); }

    void write_binary(void const *, unsigned int size) override {
        add("binary " + std::to_string(size));
    }

    void begin_list(unsigned int count) override { add("list " + std::to_string(count)); }

    void next_list_item() override { add("next"); }

    void end_list() override { add("end"); }

    void begin_record() override { add("record"); }

    void end_record() override { add("endrecord"); }

  private:
    void add(std::string text) { operations.push_back(std::move(text)); }
};

/// Plays a script of such operations to a reader's user, with the counts of lists as they stand.
///
/// Lists end only when `has_next()` says so, and a list that is left earlier stays open: that is
/// how a form with a stack of open lists behaves, and what the count of one is about.
class ScriptedReader final : public vxserialize::Reader {
  public:
    explicit ScriptedReader(std::vector<std::string> script) : m_script(std::move(script)) {}

    /// The operations not yet consumed.
    std::vector<std::string> rest() const {
        return {&m_script[0] + m_at, &m_script[0] + m_script.size()};
    }

    vxserialize::EElementKind next_type() override {
        static std::pair<char const *, vxserialize::EElementKind> const kinds[] = {
            {"null", vxserialize::eElement_Null},
            {"true", vxserialize::eElement_Boolean},
            {"false", vxserialize::eElement_Boolean},
            {"int ", vxserialize::eElement_Integer},
            {"uint ", vxserialize::eElement_Unsigned},
            {"double ", vxserialize::eElement_Double},
            {"string ", vxserialize::eElement_String},
            {"key ", vxserialize::eElement_String},
            {"absolute ", vxserialize::eElement_AbsoluteTime},
            {"relative ", vxserialize::eElement_RelativeTime},
            {"uuid ", vxserialize::eElement_Uuid},
            {"binary ", vxserialize::eElement_Binary},
            {"list ", vxserialize::eElement_List},
            {"record", vxserialize::eElement_Record}};
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

    vxcore::AbsoluteTime read_absolute_time() override {
        return vxcore::AbsoluteTime(std::stoll(take("absolute ")));
    }

    vxcore::RelativeTime read_relative_time() override {
        return vxcore::RelativeTime(std::stoll(take("relative ")));
    }

    vxcore::Uuid read_uuid() override { return take("uuid "), vxcore::Uuid(); }

    vxserialize::ReadStreamPtr read_binary() override { throw std::logic_error("not scripted"); }

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

    void end_record() override { take("endrecord"); }

  private:
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
