#include "vireo/show/delivery/Statement.h"

#include <mutex>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/Inbox.h"
#include "vireo/show/delivery/Mode.h"
#include "vireo/show/delivery/currentBatch.h"
#include "vireo/show/delivery/endOfProgram.h"

namespace tavo {

namespace {

// Without a destructor, so that it can be used while the thread ends.
constinit thread_local Batch* theBatch = nullptr;

} // namespace

Batch* currentBatch() noexcept
{
    return theBatch;
}

void sendCurrentBatch()
{
    if (!theBatch || theBatch->parts.empty() || isShowOff())
        return;
    static std::once_flag once;
    std::call_once(once, endProgramInOrder);
    inbox::deliver(*theBatch);
    theBatch->parts.clear();
}

Statement::Statement() noexcept
    : m_Batch(nullptr)
{
    if (isShowOff())
        return;
    runGuarded([this] {
        if (!theBatch)
            theBatch = new Batch; // NOLINT(bugprone-unhandled-exception-at-new): it is guarded
        m_Batch = theBatch;
        ++m_Batch->depth;
    });
}

Statement::~Statement()
{
    if (!m_Batch || --m_Batch->depth > 0)
        return;
    runGuarded(sendCurrentBatch);
    theBatch = nullptr;
    delete m_Batch;
}

} // namespace tavo
