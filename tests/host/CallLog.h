#pragma once

#include "base/RuntimeError.h"

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace pluvarine::test {

// One journal for the fake host, its objects and the fake window services, so a test sees the
// order of everything the macro did. Any operation can be made to fail: it is recorded, then
// throws RuntimeError(HostError) before it takes effect.
class CallLog {
public:
    // Records "op(args)" and throws when op is set to fail.
    void call(const std::string& op, const std::string& args = "") {
        m_entries.push_back(op + "(" + args + ")");
        if (m_failing.contains(op)) {
            throw RuntimeError(RuntimeError::HostError, op + " failed");
        }
    }

    void fail(const std::string& op) { m_failing.insert(op); }
    void heal(const std::string& op) { m_failing.erase(op); }

    const std::vector<std::string>& entries() const { return m_entries; }
    // The entries whose operation is one of the given names, in order.
    std::vector<std::string> only(const std::set<std::string>& ops) const {
        std::vector<std::string> result;
        for (const std::string& entry : m_entries) {
            if (ops.contains(entry.substr(0, entry.find('(')))) {
                result.push_back(entry);
            }
        }
        return result;
    }
    // The operation names in order, without arguments.
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const std::string& entry : m_entries) {
            result.push_back(entry.substr(0, entry.find('(')));
        }
        return result;
    }
    bool contains(const std::string& op) const {
        for (const std::string& name : names()) {
            if (name == op) {
                return true;
            }
        }
        return false;
    }
    void clear() { m_entries.clear(); }

private:
    std::vector<std::string> m_entries;
    std::set<std::string> m_failing;
};

// Joins values into an argument list with ", "; floats with all the digits they carry.
template <typename... Values> std::string args(const Values&... values) {
    std::ostringstream out;
    out.precision(9);
    const char* separator = "";
    ((out << separator << std::boolalpha << values, separator = ", "), ...);
    return out.str();
}

} // namespace pluvarine::test
