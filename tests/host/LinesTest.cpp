#include "host/control/LineReader.h"
#include "host/control/LineWriter.h"
#include "host/wall/WorkerPool.h"
#include "tests/support/Threads.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <atomic>
#include <future>
#include <gmock/gmock.h>
#include <poll.h>
#include <unistd.h>

using namespace quillmark::lumen_wall;
using ::testing::ElementsAre;

namespace {

class Pipe
{
public:
    Pipe() { EXPECT_EQ(pipe(ends_), 0); }
    ~Pipe()
    {
        close(ends_[0]);
        closeWriter();
    }
    int reader() const { return ends_[0]; }
    int writer() const { return ends_[1]; }
    void closeWriter() { close(std::exchange(ends_[1], -1)); }

    // Everything up to the end, which comes when the writer is closed, or up to a silence.
    QList<QJsonObject> readLines(int silenceMs = -1)
    {
        QByteArray bytes;
        char buffer[4096];
        pollfd watched{reader(), POLLIN, 0};
        while (poll(&watched, 1, silenceMs) > 0) {
            const ssize_t count = read(reader(), buffer, sizeof(buffer));
            if (count <= 0)
                break;
            bytes.append(buffer, static_cast<int>(count));
        }
        QList<QJsonObject> lines;
        for (const QByteArray& line : bytes.split('\n')) {
            if (!line.isEmpty())
                lines.append(QJsonDocument::fromJson(line).object());
        }
        return lines;
    }

private:
    int ends_[2];
};

} // namespace

TEST(LineSplitter, CutsLinesWhereverTheBytesWereCut)
{
    const QByteArray text = "one\n\n  \r\ntwo\r\nlonger than ten\nx\nlast";
    for (int piece = 1; piece <= text.size(); ++piece) {
        QStringList lines;
        LineSplitter splitter(
            10, [&](const QByteArray& line) { lines.append(line); }, [&] { lines.append("<too long>"); });
        for (int from = 0; from < text.size(); from += piece)
            splitter.feed(text.constData() + from, std::min(piece, text.size() - from));
        splitter.end();
        EXPECT_THAT(lines, ElementsAre("one", "two", "<too long>", "x", "last")) << "in pieces of " << piece;
    }
}

TEST(LineReader, ReadsToTheEndAndStopsWhileNothingComes)
{
    Pipe pipe;
    std::promise<void> first, end;
    QStringList lines; // written by the reader's thread before the promise is kept
    const auto onLine = [&](const QByteArray& line) {
        lines.append(line);
        if (lines.size() == 1)
            first.set_value();
    };
    {
        LineReader silent(pipe.reader(), LineSplitter(100, onLine, [] {}), [] { FAIL() << "the input has not ended"; });
        ASSERT_EQ(write(pipe.writer(), "a\nb", 3), 3);
        first.get_future().wait();
    }
    {
        LineReader reader(pipe.reader(), LineSplitter(100, onLine, [] {}), [&] { end.set_value(); });
        ASSERT_EQ(write(pipe.writer(), "c\nd", 3), 3);
        pipe.closeWriter();
        end.get_future().wait();
    }
    EXPECT_THAT(lines, ElementsAre("a", "c", "d"));
}

TEST(LineWriter, LinesOfManyThreadsStayWhole)
{
    constexpr int threads = 8, each = 500;
    Pipe pipe;
    QList<QJsonObject> lines;
    std::thread reader([&] { lines = pipe.readLines(); });
    {
        LineWriter writer(pipe.writer(), [] { FAIL() << "the reader is there"; });
        onThreads(threads, [&](int t) {
            for (int i = 0; i < each; ++i)
                writer.answer({{"thread", t}, {"i", i}, {"text", QString(i * 20, 'x')}});
        });
    }
    pipe.closeWriter();
    reader.join();

    ASSERT_EQ(lines.size(), threads * each);
    std::vector<int> next(threads, 0);
    for (const QJsonObject& line : lines) {
        const int i = line.value("i").toInt();
        EXPECT_EQ(i, next[static_cast<size_t>(line.value("thread").toInt())]++);
        EXPECT_EQ(line.value("text").toString().size(), i * 20);
    }
}

TEST(LineWriter, ASlowReaderLosesEventsAndIsToldButLosesNoAnswer)
{
    constexpr int events = 30000, silenceMs = 300;
    Pipe pipe;
    LineWriter writer(pipe.writer(), [] {});
    for (int i = 0; i < events; ++i)
        writer.event({{"event", i}});
    writer.answer({{"id", 1}});
    QList<QJsonObject> lines = pipe.readLines(silenceMs);
    EXPECT_EQ(lines.last().value("id").toInt(), 1);
    EXPECT_GT(lines.size(), 10000);

    writer.event({{"event", events}});
    lines += pipe.readLines(silenceMs);
    EXPECT_EQ(lines.last().value("event").toInt(), events);
    int seen = 0, dropped = 0; // some may be told while the writer still makes room
    for (const QJsonObject& line : lines) {
        seen += line.contains("event");
        dropped += line.value("dropped").toInt();
    }
    EXPECT_GT(dropped, 0);
    EXPECT_EQ(seen + dropped, events + 1);
}

TEST(LineWriter, EndsThoughTheReaderTakesNothing)
{
    Pipe pipe;
    QElapsedTimer clock;
    clock.start();
    {
        LineWriter writer(pipe.writer(), [] {});
        writer.answer({{"text", QString(1 << 20, 'x')}});
    }
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST(WorkerPool, JobsRunSideBySideUpToTheLimitAndAllAreDone)
{
    constexpr int limit = 4;
    std::atomic<int> done{0}, running{0}, most{0};
    {
        WorkerPool pool(limit);
        std::promise<void> gate;
        const std::shared_future<void> open = gate.get_future().share();
        std::atomic<int> met{0};
        for (int i = 0; i < limit; ++i) { // none goes on before all have met
            pool.run([&, open] {
                if (++met == limit)
                    gate.set_value();
                open.wait();
                ++done;
            });
        }
        for (int i = 0; i < 100; ++i) {
            pool.run([&] {
                const int now = ++running;
                for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
                }
                --running;
                ++done;
            });
        }
    }
    EXPECT_EQ(done, limit + 100);
    EXPECT_LE(most, limit);
}
