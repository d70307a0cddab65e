#include <cxxabi.h>
#include <malloc.h>
#include <windows.h>

#include "tavo/base/debug/SE_Exception.h"
#include "tavo/base/debug/translateFaults.h"

// GCC knows neither __except nor _set_se_translator, so the code is called by a function in assembler whose frame has a
// handler for structured exceptions. Windows asks it in its turn, after those of the frames inside. For a fault, it has
// the thread go on in that function as if the code had returned. The exception is thrown from there on: thrown where
// the fault was, it would end the process, since compilers do not expect exceptions at any instruction.

namespace {

struct Call
{
    CONTEXT entry;          // the registers before the code was called
    EXCEPTION_RECORD fault; // what ended the code
};

bool isFault(const EXCEPTION_RECORD& record)
{
    switch (record.ExceptionCode) {
    case EXCEPTION_ACCESS_VIOLATION:
    case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
    case EXCEPTION_DATATYPE_MISALIGNMENT:
    case EXCEPTION_FLT_DENORMAL_OPERAND:
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_INEXACT_RESULT:
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_OVERFLOW:
    case EXCEPTION_FLT_STACK_CHECK:
    case EXCEPTION_FLT_UNDERFLOW:
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_INT_OVERFLOW:
    case EXCEPTION_IN_PAGE_ERROR:
    case EXCEPTION_PRIV_INSTRUCTION:
    case EXCEPTION_STACK_OVERFLOW: return (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE) == 0;
    default: return false;
    }
}

} // namespace

extern "C" {

// Calls code(argument). True if it returned, false if a fault ended it, which is then in *call.
bool tavo_callWithHandler(void (*code)(const void*), const void* argument, Call* call);
// Where that function goes on after a fault.
extern const char tavo_afterFault[];

// The handler. The frame is that of tavo_callWithHandler, as its prologue left it.
[[gnu::used]] EXCEPTION_DISPOSITION tavo_handleFault(EXCEPTION_RECORD* record, void* frame, CONTEXT* context, void*)
{
    if (!isFault(*record))
        return ExceptionContinueSearch;
    Call& call = *static_cast<Call**>(frame)[6];
    call.fault = *record;
    *context = call.entry;
    context->Rip = reinterpret_cast<DWORD64>(tavo_afterFault);
    return ExceptionContinueExecution;
}
}

asm(R"(
    .text
    .p2align 4
    .globl tavo_callWithHandler
    .globl tavo_afterFault
    .seh_proc tavo_callWithHandler
tavo_callWithHandler:
    subq $0x38, %rsp
    .seh_stackalloc 0x38
    .seh_endprologue
    movq %rcx, 0x20(%rsp)           # code
    movq %rdx, 0x28(%rsp)           # argument
    movq %r8, 0x30(%rsp)            # call, which begins with the context
    movq %r8, %rcx
    call *__imp_RtlCaptureContext(%rip)
    movq 0x28(%rsp), %rcx
    call *0x20(%rsp)
    movl $1, %eax
    jmp 1f
tavo_afterFault:
    xorl %eax, %eax
1:  addq $0x38, %rsp
    ret
    .seh_handler tavo_handleFault, @except
    .seh_endproc
)");

namespace tavo {

namespace {

// Keeps a copy of the record, which is gone by the time that the exception is caught.
class Fault : public SE_Exception
{
public:
    explicit Fault(const EXCEPTION_RECORD& record)
        : SE_Exception(record.ExceptionCode, &m_Copy)
        , m_Copy(record)
    {
        m_Copy.ExceptionRecord = nullptr;
    }
    Fault(const Fault& other)
        : Fault(other.m_Copy)
    {}
    Fault& operator=(const Fault&) = delete;

private:
    EXCEPTION_RECORD m_Copy;
};

// What the C++ runtime knows of exceptions that are being thrown or handled on this thread (the layout is that of its
// ABI). Code that is left by a fault does not finish those it has begun.
struct ExceptionsUnderWay
{
    void* caught;
    unsigned int numUncaught;

    static ExceptionsUnderWay& ofThisThread()
    {
        return *reinterpret_cast<ExceptionsUnderWay*>(abi::__cxa_get_globals());
    }
};

} // namespace

void translateFaults(const std::function<void()>& code)
{
    Call call;
    const ExceptionsUnderWay underWay = ExceptionsUnderWay::ofThisThread();
    if (tavo_callWithHandler(
            [](const void* code) { (*static_cast<const std::function<void()>*>(code))(); }, &code, &call))
        return;
    ExceptionsUnderWay::ofThisThread() = underWay;
    if (call.fault.ExceptionCode == EXCEPTION_STACK_OVERFLOW)
        _resetstkoflw(); // so that Windows notices the next one
    throw Fault(call.fault);
}

} // namespace tavo
