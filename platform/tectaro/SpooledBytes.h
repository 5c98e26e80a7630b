#pragma once

#include <string>

namespace pluvarine {

// Bytes the host keeps for a while but seldom reads (an element's object file until the project
// is saved): they wait in an unnamed temporary file, so that hundreds of elements do not hold
// their files in memory. Where no temporary file can be written they stay in memory. Not
// copyable; share it.
class SpooledBytes {
public:
    explicit SpooledBytes(std::string bytes);
    ~SpooledBytes();
    SpooledBytes(const SpooledBytes&) = delete;
    SpooledBytes& operator=(const SpooledBytes&) = delete;

    // The bytes as they were given. Throws RuntimeError (HostError) when the temporary file
    // can no longer be read.
    std::string read() const;
    std::size_t size() const { return m_size; }

private:
    int m_fd = -1;
    std::size_t m_size = 0;
    std::string m_inMemory; // when there is no temporary file
};

} // namespace pluvarine
