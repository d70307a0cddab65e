#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <future>
#include <memory>

#include "vireo/show/scenes/valueCounts.h"

namespace tavo {

// Counts values for whoever shows how often they are where: few at once, and many in a thread, so that no event has to
// wait. Of those that come while others are counted, the newest are next.
class ValueCounter : public QObject
{
    Q_OBJECT

public:
    explicit ValueCounter(QObject* parent);
    ~ValueCounter() override;

    // Unless they are those that it was asked for last.
    void count(const NumberArray& numbers);

    // What was to be counted is of no interest any more.
    void forget();

signals:
    void counted(const tavo::ValueCounts& counts);

private:
    void begin(const NumberArray& numbers);
    void take();

    std::weak_ptr<const void> m_Owner; // of the numbers that were asked for last, which are not kept
    const void* m_Data = nullptr;
    std::future<ValueCounts> m_Work;
    std::shared_ptr<std::atomic<bool>> m_IsUnwanted; // what the thread does
    NumberArray m_Next;
    QTimer m_AskSoon;
};

} // namespace tavo
