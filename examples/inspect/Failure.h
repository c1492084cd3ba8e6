/// \file
/// How the program says that it cannot go on.
#pragma once

#include <exception>
#include <string>
#include <utility>

namespace Inspect
{

/// What the program answers to the shell.
enum class Status
{
    Done = 0,
    BadInput = 1, ///< a file, a name, a path or a value is not what it should be, or a file cannot be written
    BadUsage = 2  ///< the command line makes no sense
};

/// Ends the command with a message for people, in UTF-8.
class Failure : public std::exception
{
public:
    explicit Failure(std::string message, Status status = Status::BadInput)
        : m_message(std::move(message)), m_status(status)
    {}

    [[nodiscard]] const char* what() const noexcept override { return m_message.c_str(); }
    [[nodiscard]] Status GetStatus() const noexcept { return m_status; }

private:
    std::string m_message;
    Status m_status;
};

} // namespace Inspect
