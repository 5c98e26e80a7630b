#pragma once

#include "CallLog.h"
#include "host/HostElement.h"

#include <optional>
#include <string>

namespace pluvarine::test {

// A building element of the fake host; keeps the matrix it was placed with.
class FakeElement : public HostElement {
public:
    FakeElement(CallLog& log, std::string objectFile)
        : m_log(log), m_objectFile(std::move(objectFile)) {}

    void PrepareElement(bool flag) override {
        m_log.call("PrepareElement", args(flag));
        m_prepared = flag;
    }
    std::int32_t SetElementMatrix(const PlacementMatrix& matrix) override {
        m_log.call("SetElementMatrix");
        m_matrix = matrix;
        return 0;
    }
    std::int32_t CommitElement(bool flag) override {
        m_log.call("CommitElement", args(flag));
        m_committed = flag;
        return 0;
    }

    const std::string& objectFile() const { return m_objectFile; }
    bool prepared() const { return m_prepared; }
    bool committed() const { return m_committed; }
    const std::optional<PlacementMatrix>& matrix() const { return m_matrix; }

private:
    CallLog& m_log;
    std::string m_objectFile;
    bool m_prepared = false;
    bool m_committed = false;
    std::optional<PlacementMatrix> m_matrix;
};

} // namespace pluvarine::test
