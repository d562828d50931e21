// The one error that routines raise: a number that hosts of this kind know, and a description for people.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace runtime
{

// Numbers with a text of their own; Raise(number) uses both.
enum ErrorNumber : std::int32_t
{
    kInvalidProcedureCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kSubscriptOutOfRange = 9,
    kTypeMismatch = 13,
    kInternalError = 51,
    kFileNotFound = 53,
    kBadFileMode = 54,
    kDeviceIoError = 57,
    kDiskFull = 61,
    kPermissionDenied = 70,
    kPathFileAccess = 75,
    kPathNotFound = 76,
    kObjectNotSet = 91,
    kInvalidUseOfNull = 94,
    kInvalidPropertyValue = 380,
    kInvalidPropertyArrayIndex = 381,
    kDuplicateKey = 457,
    kIndexOutOfBounds = 35600,
    kElementNotFound = 35601,
    kKeyNotUnique = 35602,
};

// Database errors carry one of these two numbers.
constexpr std::int32_t kGeneralDatabaseFailure = -2147467259; // general or connection failure, time-out
constexpr std::int32_t kDatabaseError = 40002;                // any other error of a statement or of a log-in

class Error : public std::exception
{
public:
    Error(std::int32_t number, std::string description);

    std::int32_t Number() const noexcept { return m_number; }
    const std::string &Description() const noexcept { return m_description; }
    const char *what() const noexcept override { return m_description.c_str(); }

private:
    std::int32_t m_number;
    std::string m_description;
};

// The text that belongs to a number of ErrorNumber; "Application-defined or object-defined error" for any other.
std::string ErrorText(std::int32_t number);

// Throws Error with the number and its own text.
[[noreturn]] void Raise(std::int32_t number);

// The exception being handled, as an Error: foreign exceptions become 7 (out of memory) or 51 (internal error).
// To be called inside a catch block only.
Error CurrentError();

} // namespace runtime
