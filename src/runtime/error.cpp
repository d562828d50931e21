// The texts of the error numbers, and the translation of foreign exceptions.
#include "runtime/error.h"

#include <new>
#include <utility>

namespace runtime
{

Error::Error(std::int32_t number, std::string description) : m_number(number), m_description(std::move(description)) {}

std::string ErrorText(std::int32_t number)
{
    switch (number)
    {
    case kInvalidProcedureCall:
        return "Invalid procedure call or argument";
    case kOverflow:
        return "Overflow";
    case kOutOfMemory:
        return "Out of memory";
    case kSubscriptOutOfRange:
        return "Subscript out of range";
    case kTypeMismatch:
        return "Type mismatch";
    case kInternalError:
        return "Internal error";
    case kFileNotFound:
        return "File not found";
    case kBadFileMode:
        return "Bad file mode";
    case kDeviceIoError:
        return "Device I/O error";
    case kDiskFull:
        return "Disk full";
    case kPermissionDenied:
        return "Permission denied";
    case kPathFileAccess:
        return "Path/File access error";
    case kPathNotFound:
        return "Path not found";
    case kObjectNotSet:
        return "Object variable or With block variable not set";
    case kInvalidUseOfNull:
        return "Invalid use of Null";
    case kInvalidPropertyValue:
        return "Invalid property value";
    case kInvalidPropertyArrayIndex:
        return "Invalid property array index";
    case kDuplicateKey:
        return "This key is already associated with an element of this collection";
    case kIndexOutOfBounds:
        return "Index out of bounds";
    case kElementNotFound:
        return "Element not found";
    case kKeyNotUnique:
        return "Key is not unique in collection";
    default:
        return "Application-defined or object-defined error";
    }
}

void Raise(std::int32_t number)
{
    throw Error(number, ErrorText(number));
}

Error CurrentError()
{
    try
    {
        throw;
    }
    catch (const Error &error)
    {
        return error;
    }
    catch (const std::bad_alloc &)
    {
        return Error(kOutOfMemory, ErrorText(kOutOfMemory));
    }
    catch (const std::exception &error)
    {
        return Error(kInternalError, ErrorText(kInternalError) + ": " + error.what());
    }
    catch (...)
    {
        return Error(kInternalError, ErrorText(kInternalError));
    }
}

} // namespace runtime
