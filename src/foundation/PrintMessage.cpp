// SPDX-License-Identifier: MIT
#include "PrintMessage.h"
#include "PrintMessage_p.h"
#include "TextRules_p.h"

#include "CCommonQueue.h"
#include "CCommonQueue_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <thread>

int ExternPrintMessageFlag = 1;

namespace {

// One log record: a formatted message of at most 2,047 bytes and its terminating zero.
constexpr int LogRecordSize = 2048;
constexpr int LogRecordCount = 10000;
constexpr int SecondsPerDay = 86400;
// The writer takes up to this many records per turn of the ring's lock, and writes them with
// one lock of the file.
constexpr int WriterBatch = 64;
// The log file's stdio buffer: records reach the disk in writes of this size, or at a flush.
constexpr size_t StreamBuffer = 64 * 1024;

using PrintFunction = void (*)(CString);

/// The state of the one log file of the process.
struct LogFileInfo
{
    CString Name;
    int Year = 0;
    int Month = 0;
    int Day = 0;
    int KeepDays = 0;
    std::mutex Lock; // held around each write
    int Append = 0;
    FILE *Stream = nullptr;
    int MaxSize = 0;
    /// Where the next write lands, as ftell would tell: kept here instead of asking the stream
    /// before every record.
    long Position = 0;
};

/**
 * Module state of the message log. Members are destroyed in reverse order: the log file (its
 * name and lock) goes before the queue, and the destructor's body first stops a running writer
 * and closes the stream.
 */
class LogModule
{
public:
    LogModule();
    ~LogModule();

    /// Records taken from the ring in one turn: their texts back to back, without their zeros.
    struct Batch
    {
        int count = 0;
        int length[WriterBatch];
        char text[WriterBatch * LogRecordSize];
    };

    void startWriter();
    void requestStop();
    bool recordsSoon();
    bool waitForRecords(Batch &batch);
    bool takeRecords(Batch &batch);
    void writeRecords(const Batch &batch);
    void flush();

    std::atomic<int> logFileSet {0};
    std::atomic<PrintFunction> callback {nullptr};
    std::atomic<int> stopFlag {0};
    std::atomic<VantorPrivate::LogClock> clock {nullptr};

    CCommonQueue queue;
    // The ring has many adders and one taker; the taker copies a record out under this lock so
    // that no Add can write over the slot while it is being read. The writer sleeps on
    // `queued` (under this lock) until a message is added or a stop is requested.
    std::mutex queueLock;
    std::condition_variable queued;
    /// The writer sleeps on `queued` (set and read under queueLock): only then is it notified.
    bool writerSleeping = false;
    LogFileInfo file;

    std::mutex writerLock;
    std::thread writer;
    std::atomic<bool> unloading {false};
};

// Zero-initialised before any constructor runs: a message logged before the module exists or
// after it is gone skips the log path instead of touching a dead queue.
bool moduleAlive = false;

LogModule::LogModule()
    : queue(LogRecordSize, "", CCommonQueue::FifoMode, LogRecordCount, CCommonQueue::LockAdds)
{
    moduleAlive = true;
}

LogModule::~LogModule()
{
    {
        std::lock_guard<std::mutex> guard(writerLock);
        if (writer.joinable()) {
            unloading = true;
            requestStop();
            writer.join();
        }
    }
    moduleAlive = false;
    std::lock_guard<std::mutex> locker(file.Lock);
    if (file.Stream) {
        fclose(file.Stream);
        file.Stream = nullptr;
    }
}

LogModule logModule;

qint64 currentTime()
{
    const VantorPrivate::LogClock clock = logModule.clock.load(std::memory_order_relaxed);
    return clock ? clock() : static_cast<qint64>(std::time(nullptr));
}

bool toLocalDate(qint64 seconds, std::tm *out)
{
    const std::time_t t = static_cast<std::time_t>(seconds);
#ifdef Q_OS_WIN
    return localtime_s(out, &t) == 0;
#else
    return localtime_r(&t, out) != nullptr;
#endif
}

/// Opens the log stream and sets info.Position to where its first write lands.
FILE *openStream(LogFileInfo &info, const CString &name, int append)
{
    info.Position = 0;
    if (name.IsEmpty())
        return nullptr;
    FILE *stream = std::fopen(QFile::encodeName(name.text).constData(), append ? "a" : "w");
    if (stream) {
        std::setvbuf(stream, nullptr, _IOFBF, StreamBuffer);
        // In append mode the stream starts at the end of what the file holds.
        info.Position = append ? std::max(0L, std::ftell(stream)) : 0;
    }
    return stream;
}

/**
 * The dated name of the log for time `t` (seconds since 1970), or an empty name when the log
 * is undated or the date is the one remembered. The date goes before the last "." of the whole
 * name; a name without a "." serves as both base and extension. A new date is remembered.
 */
CString makeDatedLogName(LogFileInfo &info, qint64 t, bool createFolder)
{
    if (info.KeepDays == 0 || info.Name.IsEmpty())
        return CString();
    std::tm tm {};
    if (!toLocalDate(t, &tm))
        return CString();
    const int year = tm.tm_year + 1900;
    const int month = tm.tm_mon + 1;
    const int day = tm.tm_mday;
    if (info.Year == year && info.Month == month && info.Day == day)
        return CString();

    const QString &name = info.Name.text;
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    const QString base = dot < 0 ? name : name.left(dot);
    const QString extension = dot < 0 ? name : name.mid(dot);
    const QString dated = base + QString::asprintf("%04d%02d%02d", year, month, day) + extension;

    if (createFolder && !QFileInfo::exists(dated))
        QDir().mkpath(QFileInfo(dated).path());
    info.Year = year;
    info.Month = month;
    info.Day = day;
    return CString(dated);
}

void openLogFile(LogFileInfo &info, char const *name, int keepDays, int append, int maxSize)
{
    const CString fileName(name);
    std::lock_guard<std::mutex> locker(info.Lock);
    info.MaxSize = maxSize;
    info.Name = fileName;
    info.KeepDays = keepDays;
    info.Append = append;
    // A dated log only remembers today here: the first day is written to the plain name.
    if (keepDays != 0)
        makeDatedLogName(info, currentTime(), true);
    if (info.Stream)
        fclose(info.Stream);
    info.Stream = openStream(info, info.Name, append);
}

/// Cuts a message that filled the buffer back to its last whole character.
void cutToWholeCharacter(char *text, int length)
{
    text[VantorText::wholeCharacters(text, length, VantorText::TextEnd::CutShort)] = '\0';
}

/// Formats into a buffer of LogRecordSize bytes; returns the text's length (at most 2,047).
/// Only the text and its terminating zero are written: the bytes after the zero are left as
/// they were.
int formatRecord(char *record, char const *format, va_list args)
{
    const int n = std::vsnprintf(record, LogRecordSize, format, args);
    if (n < 0) {
        record[0] = '\0';
        return 0;
    }
    if (n < LogRecordSize)
        return n;
    cutToWholeCharacter(record, LogRecordSize - 1);
    return int(std::strlen(record));
}

/// Queues a message of `length` bytes (its zero follows it in `record`).
void addToLog(const char *record, int length)
{
    bool wake;
    {
        std::lock_guard<std::mutex> locker(logModule.queueLock);
        // A full ring gives up its oldest message for the newest; left alone, the ring would wrap
        // onto its read position and read as empty, losing every queued message at once.
        if (logModule.queue.GetCount() >= LogRecordCount - 1)
            logModule.queue.Delete(1);
        // Only the text and its zero are copied into the slot: the writer reads a record up to
        // its zero, so the bytes after it (left by earlier messages) are never seen. The ring is
        // private to this process and this lock serialises its adders, so the queue's own lock
        // is not taken as well.
        CCommonQueuePrivate::addPrefix(logModule.queue, record, length + 1, 10000, 1);
        wake = logModule.writerSleeping;
    }
    if (wake)
        logModule.queued.notify_one();
}

void LogModule::requestStop()
{
    {
        // Set under the lock the writer waits with, so that the request cannot slip in between
        // its test of the flag and its sleep.
        std::lock_guard<std::mutex> locker(queueLock);
        stopFlag = 1;
    }
    queued.notify_all();
}

/**
 * True when a message is queued (or a stop requested) within a few tens of microseconds. The
 * writer looks before it flushes and sleeps: amid a stream of messages the ring runs empty often
 * for a moment, and a flush and a wake-up each time would cost far more than the wait.
 */
bool LogModule::recordsSoon()
{
    const auto until = std::chrono::steady_clock::now() + std::chrono::microseconds(50);
    do {
        std::this_thread::yield();
        if (stopFlag.load() || queue.GetCount() > 0)
            return true;
    } while (std::chrono::steady_clock::now() < until);
    return false;
}

/// Sleeps until a message is queued or a stop is requested, then takes records; false on a stop.
bool LogModule::waitForRecords(Batch &batch)
{
    {
        std::unique_lock<std::mutex> locker(queueLock);
        writerSleeping = true;
        queued.wait(locker, [this] { return stopFlag.load() || queue.GetCount() > 0; });
        writerSleeping = false;
    }
    return !stopFlag.load() && takeRecords(batch);
}

/// Takes up to WriterBatch records from the ring; false when it is empty. The texts are copied
/// out under the ring's lock, so that no Add can write over a slot while it is being read.
bool LogModule::takeRecords(Batch &batch)
{
    batch.count = 0;
    std::lock_guard<std::mutex> locker(queueLock);
    char *out = batch.text;
    while (batch.count < WriterBatch) {
        const char *data = queue.Get(CCommonQueue::SearchAll, CCommonQueue::StatusAny,
                                     CCommonQueue::Relative, nullptr);
        if (!data)
            break;
        const size_t length = strnlen(data, LogRecordSize - 1);
        std::memcpy(out, data, length);
        out += length;
        batch.length[batch.count++] = int(length);
    }
    return batch.count > 0;
}

/**
 * Writes a batch of records, each as a single write of its own would: the dated name is checked
 * before each, and the rewind mark too. The position is counted here rather than asked of the
 * stream: it is the file's end in append mode (where ftell reports the end of the file after a
 * write, a rewind or not) and the write position otherwise. In append mode a rewind changes no
 * byte - every write lands at the end - so there it is only counted, not done; in write mode
 * the stream is rewound at exactly the same records as ever.
 */
void LogModule::writeRecords(const Batch &batch)
{
    std::lock_guard<std::mutex> locker(file.Lock);
    // Records go to the stream in runs: one write for all that lie between two rewinds or
    // reopenings.
    const char *run = batch.text;
    size_t runBytes = 0;
    const auto writeRun = [&] {
        if (runBytes)
            std::fwrite(run, 1, runBytes, file.Stream);
        runBytes = 0;
    };
    const char *record = batch.text;
    for (int i = 0; i < batch.count; record += batch.length[i++]) {
        if (file.KeepDays != 0) {
            const qint64 now = currentTime();
            const CString dated = makeDatedLogName(file, now, true);
            if (!dated.IsEmpty()) {
                writeRun();
                // Both lookups share the remembered date, which ends on the expired day: every
                // later message repeats the delete-and-reopen, as the header describes.
                const CString expired =
                    makeDatedLogName(file, now - qint64(file.KeepDays) * SecondsPerDay, false);
                if (!expired.IsEmpty())
                    QFile::remove(expired.text);
                if (file.Stream)
                    fclose(file.Stream);
                file.Stream = openStream(file, dated, file.Append);
            }
        }
        if (!file.Stream)
            continue; // dropped: there is no file to write to
        if (file.Position > file.MaxSize && !file.Append) {
            writeRun();
            std::rewind(file.Stream);
            file.Position = 0;
        }
        if (!runBytes)
            run = record;
        runBytes += size_t(batch.length[i]);
        file.Position += batch.length[i];
    }
    writeRun();
}

void LogModule::flush()
{
    std::lock_guard<std::mutex> locker(file.Lock);
    if (file.Stream)
        std::fflush(file.Stream);
}

/// Copies queued messages into the log file until the stop flag is set; returns 1 then.
/// The writer sleeps while the ring is empty, and flushes the file whenever the ring runs empty,
/// so a message is on disk a moment after it was logged.
int LogWriterLoop()
{
    // Large: kept off the writer thread's stack.
    const std::unique_ptr<LogModule::Batch> batch(new LogModule::Batch);
    for (;;) {
        if (logModule.stopFlag.load())
            return 1;
        if (!logModule.takeRecords(*batch)) {
            if (logModule.recordsSoon())
                continue;
            logModule.flush();
            if (!logModule.waitForRecords(*batch))
                continue;
        }
        logModule.writeRecords(*batch);
    }
}

void LogModule::startWriter()
{
    writer = std::thread([this] {
        LogWriterLoop();
        if (unloading) {
            const std::unique_ptr<Batch> batch(new Batch);
            while (takeRecords(*batch))
                writeRecords(*batch);
        }
        flush();
    });
}

} // namespace

void PrintMessage(char const *format, ...)
{
    va_list args;
    va_start(args, format);
    PrintMessageSub(format, args);
    va_end(args);
}

void PrintMessageSub(char const *format, va_list args)
{
    const int toApplication = ExternPrintMessageFlag;
    const int toLog = moduleAlive && logModule.logFileSet.load(std::memory_order_relaxed);
    if ((!toApplication && !toLog) || !format)
        return;

    char record[LogRecordSize];
    bool formatted = false;
    if (toLog) {
        va_list copy;
        va_copy(copy, args);
        const int length = formatRecord(record, format, copy);
        va_end(copy);
        formatted = true;
        addToLog(record, length);
    }
    if (!toApplication)
        return;

    const PrintFunction callback = logModule.callback.load(std::memory_order_relaxed);
    if (!callback) {
        va_list copy;
        va_copy(copy, args);
        std::vfprintf(stdout, format, copy);
        va_end(copy);
        return;
    }
    if (!formatted) {
        va_list copy;
        va_copy(copy, args);
        formatRecord(record, format, copy);
        va_end(copy);
    }
    callback(CString(record));
}

void SetPrintMessageFunction(void (*function)(CString))
{
    logModule.callback.store(function, std::memory_order_relaxed);
}

void SetLogFile(char const *name, int keepDays)
{
    logModule.logFileSet = 1;
    openLogFile(logModule.file, name, keepDays, 1, 4096);
}

void ClosePrintMessageThread()
{
    logModule.requestStop();
}

bool StartPrintMessageThread()
{
    std::lock_guard<std::mutex> guard(logModule.writerLock);
    if (logModule.writer.joinable()) {
        // The writer only ends on a stop request; without one it is still running.
        if (!logModule.stopFlag.load())
            return true;
        logModule.writer.join();
    }
    logModule.stopFlag = 0;
    logModule.startWriter();
    return true;
}

namespace VantorPrivate {

void setLogClock(LogClock clock)
{
    logModule.clock.store(clock);
}

void openLogFile(char const *name, int keepDays, int append, int maxSize)
{
    ::openLogFile(logModule.file, name, keepDays, append, maxSize);
}

} // namespace VantorPrivate
