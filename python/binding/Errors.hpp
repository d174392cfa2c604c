#pragma once
// Errors the binding raises from code that runs without the GIL; the module's
// translator turns them, and XMP_Error, into Python exceptions.

#include <stdexcept>
#include <string>

namespace keltemporalxmp::python {

// A file that cannot be used as asked: becomes the OSError subclass of its
// errno (FileNotFoundError, PermissionError, IsADirectoryError, ...).
class FileError : public std::runtime_error {
public:
    FileError(int number, std::string path, const std::string& message)
        : std::runtime_error(message), m_number(number), m_path(std::move(path)) {}

    int Number() const { return m_number; }
    const std::string& Path() const { return m_path; }

private:
    int m_number;
    std::string m_path;
};

// A bad argument value: becomes ValueError.
class ArgumentError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

// A bad argument type: becomes TypeError.
class ArgumentTypeError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

}  // namespace keltemporalxmp::python
