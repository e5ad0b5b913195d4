// SPDX-License-Identifier: MIT
// Records handed from one process to another: CCommonQueue (shared segment, lock on, 4,096
// slots) against Boost.Interprocess message_queue (4,096 messages), 64- and 2,048-byte records.
// This process adds; a copy of itself started as the taker takes every record, checks that the
// sequence numbers arrive complete and in order, and reports how many it took.
#include "Compare.h"

#include <CCommonQueue.h>

#include <boost/interprocess/ipc/message_queue.hpp>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace bip = boost::interprocess;

namespace {

constexpr int kSlots = 4096;
constexpr std::int32_t kStop = -1;

/// The taker: prints "READY", then takes until the stop record; exit status 0 when every record
/// came in order, and the count on standard output.
int take(const std::string &kind, const std::string &key, int size)
{
    std::vector<char> copy(static_cast<size_t>(size));
    std::int32_t expect = 0;
    bool inOrder = true;
    auto check = [&]() {
        std::int32_t seq;
        std::memcpy(&seq, copy.data(), 4);
        if (seq == kStop)
            return false;
        inOrder = inOrder && seq == expect;
        ++expect;
        return true;
    };
    if (kind == "vantor") {
        CCommonQueue queue(size, key.c_str(), 0, kSlots, 1);
        if (!queue.GetQueue())
            return 3;
        std::printf("READY\n");
        std::fflush(stdout);
        for (;;) {
            const char *data = queue.Get(-1, 0, 0, nullptr);
            if (!data) {
                std::this_thread::yield();
                continue;
            }
            std::memcpy(copy.data(), data, size_t(size));
            if (!check())
                break;
        }
    } else {
        bip::message_queue queue(bip::open_only, key.c_str());
        std::printf("READY\n");
        std::fflush(stdout);
        for (;;) {
            bip::message_queue::size_type got = 0;
            unsigned int prio = 0;
            queue.receive(copy.data(), copy.size(), got, prio);
            if (!check())
                break;
        }
    }
    std::printf("%d\n", expect);
    return inOrder ? 0 : 4;
}

struct Taker
{
    pid_t pid = -1;
    FILE *out = nullptr;

    bool start(const char *kind, const std::string &key, int size)
    {
        int fds[2];
        if (::pipe(fds) != 0)
            return false;
        pid = ::fork();
        if (pid == 0) {
            ::dup2(fds[1], 1);
            ::close(fds[0]);
            const std::string s = std::to_string(size);
            ::execl("/proc/self/exe", "compare_queue", "--take", kind, key.c_str(), s.c_str(),
                    static_cast<char *>(nullptr));
            ::_exit(127);
        }
        ::close(fds[1]);
        out = ::fdopen(fds[0], "r");
        char line[32] = {};
        return out && std::fgets(line, sizeof line, out) && std::strncmp(line, "READY", 5) == 0;
    }
    /// The count the taker reports, or -1 when it lost or reordered records.
    long long finish()
    {
        long long n = -1;
        if (std::fscanf(out, "%lld", &n) != 1)
            n = -1;
        std::fclose(out);
        int status = 0;
        ::waitpid(pid, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? n : -1;
    }
};

void compareSize(int size, int records)
{
    std::vector<char> record(size_t(size), 'r');
    auto put = [&](std::int32_t seq) { std::memcpy(record.data(), &seq, 4); };

    const std::string key = "vantor-compare-" + std::to_string(size);
    double tv = 0;
    long long vantorTaken = -1;
    {
        CCommonQueue queue(size, key.c_str(), 0, kSlots, 1);
        queue.Init();
        Taker taker;
        if (taker.start("vantor", key, size)) {
            tv = sidebyside::seconds([&] {
                for (std::int32_t i = 0; i < records; ++i) {
                    // The ring overwrites when full: leave the taker room, as a producer must.
                    while (queue.GetCount() >= kSlots - 2)
                        std::this_thread::yield();
                    put(i);
                    queue.Add(record.data(), nullptr, 10000, 1, nullptr);
                }
                while (queue.GetCount() > 0)
                    std::this_thread::yield();
            });
            put(kStop);
            queue.Add(record.data(), nullptr, 10000, 1, nullptr);
            vantorTaken = taker.finish();
        }
    }

    const std::string name = "vantor-compare-boost-" + std::to_string(size);
    bip::message_queue::remove(name.c_str());
    double tb = 0;
    long long boostTaken = -1;
    {
        bip::message_queue queue(bip::create_only, name.c_str(), kSlots, size_t(size));
        Taker taker;
        if (taker.start("boost", name, size)) {
            tb = sidebyside::seconds([&] {
                for (std::int32_t i = 0; i < records; ++i) {
                    put(i);
                    queue.send(record.data(), record.size(), 0);
                }
                while (queue.get_num_msg() > 0)
                    std::this_thread::yield();
            });
            put(kStop);
            queue.send(record.data(), record.size(), 0);
            boostTaken = taker.finish();
        }
    }
    bip::message_queue::remove(name.c_str());

    const bool ok = vantorTaken == records && boostTaken == records;
    sidebyside::row("queue between two processes, " + std::to_string(size) + "-byte records",
                    tv > 0 ? records / tv / 1e6 : 0, "boost message_queue",
                    tb > 0 ? records / tb / 1e6 : 0, "M rec/s", ok);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 5 && std::strcmp(argv[1], "--take") == 0)
        return take(argv[2], argv[3], std::atoi(argv[4]));
    // Segment keys are files in the temporary folder: one of our own, inherited by the taker.
    QTemporaryDir tmp;
    if (!tmp.isValid())
        return 1;
    ::setenv("TMPDIR", QFile::encodeName(tmp.path()).constData(), 1);
    compareSize(64, 2000000);
    compareSize(2048, 500000);
    return 0;
}
