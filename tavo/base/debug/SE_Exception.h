#pragma once

#include "tavo/base/Export.h"

namespace tavo {

// An exception of the operating system (an access violation, a division by zero) as a C++ exception. translateFaults
// throws it, and applications may that translate such exceptions themselves.
class TAVO_BASE_EXPORT SE_Exception
{
public:
    // The record is the operating system's description of the exception (EXCEPTION_RECORD on Windows), null if there is
    // none. It is only pointed to.
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
