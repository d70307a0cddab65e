#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <atomic>
#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "vireo/show/show.h"

// All calls from eight threads at once, while windows open and close.
namespace tavo {
namespace {

constexpr int NUM_THREADS = 8;
constexpr int NUM_ROUNDS = 40;

class CallsFromThreadsTest : public testing::Test
{
protected:
    std::string path(const std::string& name) const { return m_Folder.filePath(name.c_str()).toStdString(); }

    // What belongs to everybody, and what to this thread alone.
    void callEverything(int thread) const
    {
        const Plot kept = plot("kept");
        const std::string own = "own " + std::to_string(thread);
        for (int round = 0; round < NUM_ROUNDS; ++round) {
            const std::vector<double> samples(1000, round);
            plot("shared").curve("a", samples).points("b", samples, samples).append("c", round, thread);
            kept.append("d", samples, samples).keep("d", 5000).title(own).colour("d", {1, 2, 3, 255});
            plot(own).curve("y", {round}).xAxis("x", "s").yAxis("y", "m").xRange(0, 2).yRange(-1, round);
            plot(own)
                .steps("s", samples)
                .bars("b", {1, 2})
                .histogram("h", samples)
                .band("l", {1}, {0}, {2})
                .style("y", "y2");
            plot(own)
                .vertical(round, "now")
                .horizontal(thread)
                .window(5)
                .link(kept)
                .logX(false)
                .logY(false)
                .timeX(false);
            plot(own).y2Axis("z", "K");
            scene("scene").cloud(own, samples.data(), 300).scalar("round", Numbers(samples.data(), 300)).size(3);
            scene("scene").mesh("mesh", {0, 0, 0, 1, 0, 0, 0, 1, round}, {0, 1, 2});
            scene(own).lines("line", {0, 0, 0, 1, 1, thread}).colour({255, 0, 0, 255});
            image("image", samples, 100, 10).percentiles(1, 99).link(image(own + " image"));
            image(own + " image", samples.data(), 25, 10, 3).stride(32 * 3 * sizeof(double)).difference("image");
            {
                const Statement together;
                plot("shared").curve(own, samples).remove("b");
                plot("left").curve("y", samples);
            }
            pump();
            callSeldom(thread, round);
        }
    }

    void sendLast(int thread) const
    {
        const std::string own = "own " + std::to_string(thread);
        plot(own).clear().curve("y", {1000 + thread});
        image(own + " image", {2000 + thread}, 1, 1);
    }

    std::string saved(const std::string& name) const
    {
        EXPECT_TRUE(saveData(name, path("last.csv")));
        QFile file(path("last.csv").c_str());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString(file.readAll()).section('\n', 1).trimmed().toStdString();
    }

    // Runs it all, and has the caller's thread do what it does until it is over.
    template <typename Serve>
    void callFromThreads(Serve serve)
    {
        runInThreads([this](int thread) { callEverything(thread); }, serve);
        runInThreads([this](int thread) { sendLast(thread); }, serve);
        for (int thread = 0; thread < NUM_THREADS; ++thread) {
            const std::string own = "own " + std::to_string(thread);
            EXPECT_EQ(saved(own), "0," + std::to_string(1000 + thread));
            EXPECT_EQ(saved(own + " image"), "0,0," + std::to_string(2000 + thread));
        }
        closeWindow();
    }

private:
    template <typename Work, typename Serve>
    static void runInThreads(Work work, Serve serve)
    {
        std::atomic<int> numRunning{NUM_THREADS};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < NUM_THREADS; ++thread)
            threads.emplace_back([thread, &work, &numRunning] {
                work(thread);
                --numRunning;
            });
        while (numRunning > 0)
            serve();
        for (std::thread& thread : threads)
            thread.join();
    }

    void callSeldom(int thread, int round) const
    {
        switch ((round + 5 * thread) % 20) {
        case 1: openWindow(); break;
        case 5: savePicture("shared", path(std::to_string(thread) + ".png"), 60, 40); break;
        case 7: remove("left"); break;
        case 9: saveData("kept", path(std::to_string(thread) + ".csv")); break;
        case 11: closeWindow(); break;
        case 13: remove(std::string("shared")); break;
        case 15: thread == 0 && savePictures(path("pictures")); break;
        case 17: plot("kept").clear(); break;
        case 19: clear(); break;
        default: break;
        }
    }

    QTemporaryDir m_Folder;
};

class ProducersTest : public CallsFromThreadsTest
{
protected:
    ~ProducersTest() override
    {
        clear();
        closeWindow();
        QCoreApplication::processEvents();
    }

    static void sendOnce(int i)
    {
        const std::vector<double> samples(1000, i);
        plot("p").curve("y", samples).append("z", i, i).title("t");
        scene("s").cloud("c", samples.data(), 300).scalar("n", Numbers(samples.data(), 300));
        image("i", samples, 100, 10);
        slices("v", samples, {10, 10, 10}, 1);
        remove("q");
        plot("q").curve("y", samples);
        pump();
        closeWindow();
    }

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    const QApplication m_Application{m_NumArguments, m_Arguments};
};

TEST_F(ProducersTest, DoNotWaitForTheThreadOfTheWindow)
{
    std::future<void> sent = std::async(std::launch::async, [] {
        for (int i = 0; i < 100; ++i)
            sendOnce(i);
    });
    // Which does nothing meanwhile.
    const bool haveWaited = sent.wait_for(std::chrono::seconds(60)) != std::future_status::ready;
    EXPECT_FALSE(haveWaited);
    while (sent.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        QCoreApplication::processEvents();
}

TEST_F(CallsFromThreadsTest, WithoutAnApplication)
{
    ASSERT_TRUE(openWindow());
    callFromThreads([] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
}

TEST_F(CallsFromThreadsTest, WithAnApplication)
{
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    int numArguments = 1;
    const QApplication application(numArguments, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    callFromThreads([] { QCoreApplication::processEvents(QEventLoop::AllEvents, 10); });
}

} // namespace
} // namespace tavo
