#pragma once

#include "tavo/base/Export.h"

namespace tavo {

/// An exception of the operating system, such as an access violation or a division by zero, as a C++ exception.
/// translateFaults throws it; so may applications that translate such exceptions themselves.
///
///     try {
///         translateFaults(compute);
///     } catch (const SE_Exception& fault) {
///         displayOSException(fault.getCode(), fault.getRecord());
///     }
class TAVO_BASE_EXPORT SE_Exception
{
public:
    /// Keeps the code and a pointer to the operating system's description (EXCEPTION_RECORD on Windows), which may be
    /// null.
    SE_Exception(unsigned int code, const void* record)
        : m_Code(code)
        , m_Record(record)
    {}
    virtual ~SE_Exception();

    unsigned int getCode() const { return m_Code; }
    const void* getRecord() const { return m_Record; }

private:
    unsigned int m_Code;
    const void* m_Record;
};

} // namespace tavo
