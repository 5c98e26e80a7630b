#pragma once

#include <stdexcept>
#include <string>

namespace pluvarine {

// A run-time error of the kind the program's procedures give up a step on: a conversion that
// fails, an arithmetic fault, a viewer or host call that reports an error, a missing object.
// It carries an error number and a description, as the error messages show them.
class RuntimeError : public std::runtime_error {
public:
    enum Number : int {
        InvalidProcedureCall = 5,
        Overflow = 6,
        DivisionByZero = 11,
        TypeMismatch = 13,
        BadFileName = 52,
        FileNotFound = 53,
        PathFileAccess = 75,
        ObjectNotSet = 91,
        ViewerError = 1001, // an error raised by the 3D viewer control
        HostError = 1002,   // an error raised by a host operation
    };

    RuntimeError(int number, const std::string& description)
        : std::runtime_error(description), m_number(number) {}

    int number() const { return m_number; }
    std::string description() const { return what(); }

private:
    int m_number;
};

} // namespace pluvarine
