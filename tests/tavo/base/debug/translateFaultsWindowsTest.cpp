#include <exception>
#include <functional>
#include <gtest/gtest.h>
#include <malloc.h>
#include <thread>
#include <windows.h>

#include "tavo/base/debug/SE_Exception.h"
#include "tavo/base/debug/translateFaults.h"
#include "tests/tavo/base/debug/faults.h"

namespace tavo {
namespace {

// The code of the fault that a piece of code comes out with, 0 if it comes to its end.
unsigned int faultOf(const std::function<void()>& code)
{
    try {
        translateFaults(code);
        return 0;
    } catch (const SE_Exception& fault) {
        return fault.getCode();
    }
}

const EXCEPTION_RECORD& recordOf(const SE_Exception& fault)
{
    return *static_cast<const EXCEPTION_RECORD*>(fault.getRecord());
}

void raise(DWORD code, DWORD flags)
{
    RaiseException(code, flags, 0, nullptr);
}

TEST(TranslateFaultsWindowsTest, ThrowsFaultsOfTheProcessor)
{
    EXPECT_EQ(faultOf(writeThroughNull), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(faultOf(callNull), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(faultOf(divideByZero), EXCEPTION_INT_DIVIDE_BY_ZERO);
    EXPECT_EQ(faultOf([] { asm("ud2"); }), EXCEPTION_ILLEGAL_INSTRUCTION);
    EXPECT_EQ(faultOf([] { asm("hlt"); }), EXCEPTION_PRIV_INSTRUCTION);
    EXPECT_EQ(faultOf([] {}), 0u);
}

TEST(TranslateFaultsWindowsTest, ThrowsARecordThatLivesAsLongAsTheException)
{
    std::exception_ptr kept;
    try {
        translateFaults(writeThroughNull);
    } catch (const SE_Exception& fault) {
        EXPECT_EQ(recordOf(fault).ExceptionInformation[0], 1u) << "a write";
        kept = std::current_exception();
    }
    faultOf(divideByZero);
    try {
        std::rethrow_exception(kept);
    } catch (const SE_Exception& fault) {
        EXPECT_EQ(recordOf(fault).ExceptionCode, EXCEPTION_ACCESS_VIOLATION);
        EXPECT_EQ(recordOf(fault).ExceptionInformation[1], 0u) << "to null";
    }
}

// All registers that a function must preserve are in use across the call.
TEST(TranslateFaultsWindowsTest, KeepsTheVariablesOfItsCaller)
{
    volatile int one = 1;
    int whole[10];
    double real[12];
    for (int i = 0; i < 10; ++i)
        whole[i] = one + i;
    for (int i = 0; i < 12; ++i)
        real[i] = one / (1.0 + i);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(faultOf([] {
            // Spoils them.
            asm volatile("xorl %%ebx, %%ebx; xorl %%esi, %%esi; xorl %%edi, %%edi; xorl %%r12d, %%r12d;"
                         "xorl %%r13d, %%r13d; xorl %%r14d, %%r14d; xorl %%r15d, %%r15d; xorps %%xmm6, %%xmm6;"
                         "xorps %%xmm7, %%xmm7; xorps %%xmm8, %%xmm8; xorps %%xmm15, %%xmm15; ud2" ::
                             : "rbx", "rsi", "rdi", "r12", "r13", "r14", "r15", "xmm6", "xmm7", "xmm8", "xmm15");
        }),
            EXCEPTION_ILLEGAL_INSTRUCTION);
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(whole[i], 1 + i);
        for (int i = 0; i < 12; ++i)
            EXPECT_EQ(real[i], 1 / (1.0 + i));
    }
}

struct Counted
{
    int& numDestroyed;
    ~Counted() { ++numDestroyed; }
};

TEST(TranslateFaultsWindowsTest, LeavesTheCodeWhereTheFaultIs)
{
    int numDestroyed = 0;
    bool isCaughtInside = false;
    EXPECT_EQ(faultOf([&] {
        const Counted outer{numDestroyed};
        try {
            const Counted inner{numDestroyed};
            writeThroughNull();
        } catch (...) {
            isCaughtInside = true;
        }
    }),
        EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(numDestroyed, 0);
    EXPECT_FALSE(isCaughtInside);
    EXPECT_EQ(faultOf([]() noexcept { writeThroughNull(); }), EXCEPTION_ACCESS_VIOLATION);
}

TEST(TranslateFaultsWindowsTest, IsAnExceptionLikeAnyOtherOutside)
{
    int numDestroyed = 0;
    try {
        const Counted outside{numDestroyed};
        translateFaults(writeThroughNull);
    } catch (...) {
        EXPECT_EQ(numDestroyed, 1);
    }
    EXPECT_EQ(numDestroyed, 1);
}

TEST(TranslateFaultsWindowsTest, ForgetsTheExceptionsThatTheCodeWasBusyWith)
{
    EXPECT_EQ(faultOf([] {
        try {
            throw 5;
        } catch (int) {
            writeThroughNull();
        }
    }),
        EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(std::current_exception(), nullptr);

    struct FailsToDie
    {
        ~FailsToDie() { writeThroughNull(); }
    };
    EXPECT_EQ(faultOf([] {
        const FailsToDie object;
        throw 5;
    }),
        EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(std::uncaught_exceptions(), 0);
}

TEST(TranslateFaultsWindowsTest, ThrowsToTheInnermostCall)
{
    bool hasGoneOn = false;
    EXPECT_EQ(faultOf([&] {
        EXPECT_EQ(faultOf(writeThroughNull), EXCEPTION_ACCESS_VIOLATION);
        hasGoneOn = true;
        divideByZero();
    }),
        EXCEPTION_INT_DIVIDE_BY_ZERO);
    EXPECT_TRUE(hasGoneOn);
}

TEST(TranslateFaultsWindowsTest, WorksOnEveryThread)
{
    unsigned int faults[2] = {};
    std::thread first([&] { faults[0] = faultOf(writeThroughNull); });
    std::thread second([&] { faults[1] = faultOf(divideByZero); });
    first.join();
    second.join();
    EXPECT_EQ(faults[0], EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(faults[1], EXCEPTION_INT_DIVIDE_BY_ZERO);
}

// Wine has a guard page at the very end of a stack only, and behind it too little room to call a handler. Here it gets
// a guard page that moves as the stack grows, as Windows has it, and more room.
void growStackAsOnWindows()
{
    ULONG room = 65536;
    ASSERT_TRUE(SetThreadStackGuarantee(&room));
    ASSERT_TRUE(_resetstkoflw());
}

[[gnu::noinline]] int recurse(int depth)
{
    volatile char local[500];
    local[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : recurse(depth + 1) + local[0];
}

TEST(TranslateFaultsWindowsTest, ThrowsStackOverflowsAgainAndAgain)
{
    growStackAsOnWindows();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(faultOf([] { recurse(0); }), EXCEPTION_STACK_OVERFLOW);
}

TEST(TranslateFaultsWindowsTest, RestoresTheFloatingPointUnit)
{
    const unsigned int before = _mm_getcsr();
    EXPECT_EQ(faultOf([] {
        _mm_setcsr(_mm_getcsr() & ~_MM_MASK_DIV_ZERO);
        volatile double zero = 0;
        volatile double quotient = 1 / zero;
        static_cast<void>(quotient);
    }),
        EXCEPTION_FLT_DIVIDE_BY_ZERO);
    EXPECT_EQ(_mm_getcsr(), before);
}

void* s_Reserved = nullptr;

LONG CALLBACK commitReserved(EXCEPTION_POINTERS* pointers)
{
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    const bool isOurs = record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
                        record.ExceptionInformation[1] == reinterpret_cast<ULONG_PTR>(s_Reserved);
    if (!isOurs)
        return EXCEPTION_CONTINUE_SEARCH;
    VirtualAlloc(s_Reserved, 1, MEM_COMMIT, PAGE_READWRITE);
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(TranslateFaultsWindowsTest, LeavesFaultsToThoseWhoHandleThem)
{
    s_Reserved = VirtualAlloc(nullptr, 1, MEM_RESERVE, PAGE_READWRITE);
    void* const handler = AddVectoredExceptionHandler(FALSE, commitReserved);
    EXPECT_EQ(faultOf([] { *static_cast<volatile char*>(s_Reserved) = 1; }), 0u);
    RemoveVectoredExceptionHandler(handler);
    VirtualFree(s_Reserved, 0, MEM_RELEASE);

    // This one has an __except block inside.
    BOOL isBad = FALSE;
    EXPECT_EQ(faultOf([&] { isBad = IsBadReadPtr(nullptr, 1); }), 0u);
    EXPECT_TRUE(isBad);
}

// Ends the process with the code of what nobody has handled.
LONG WINAPI endWithCode(EXCEPTION_POINTERS* pointers)
{
    TerminateProcess(GetCurrentProcess(), pointers->ExceptionRecord->ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

template <typename Code>
void runToTheEnd(Code code)
{
    SetUnhandledExceptionFilter(endWithCode);
    code();
}

testing::ExitedWithCode endsBy(DWORD code)
{
    return testing::ExitedWithCode(static_cast<int>(code));
}

TEST(TranslateFaultsWindowsDeathTest, LeavesFaultsOutsideAlone)
{
    EXPECT_EXIT(runToTheEnd(writeThroughNull), endsBy(EXCEPTION_ACCESS_VIOLATION), "");
    EXPECT_EXIT(runToTheEnd([] {
        faultOf(divideByZero);
        writeThroughNull();
    }),
        endsBy(EXCEPTION_ACCESS_VIOLATION), "");
    EXPECT_EXIT(runToTheEnd([] { translateFaults([] { std::thread(writeThroughNull).join(); }); }),
        endsBy(EXCEPTION_ACCESS_VIOLATION), "");
}

TEST(TranslateFaultsWindowsDeathTest, LeavesWhatIsNoFaultAlone)
{
    constexpr DWORD OF_AN_APPLICATION = 0xE0001234;
    EXPECT_EXIT(runToTheEnd([] { faultOf([] { raise(OF_AN_APPLICATION, 0); }); }), endsBy(OF_AN_APPLICATION), "");
    EXPECT_EXIT(runToTheEnd([] { faultOf(DebugBreak); }), endsBy(EXCEPTION_BREAKPOINT), "");
    EXPECT_EXIT(runToTheEnd([] { faultOf([] { raise(EXCEPTION_ACCESS_VIOLATION, EXCEPTION_NONCONTINUABLE); }); }),
        endsBy(EXCEPTION_ACCESS_VIOLATION), "");
    EXPECT_EQ(faultOf([] { OutputDebugStringA("a text for a debugger"); }), 0u);
}

} // namespace
} // namespace tavo
