// The RTOS operations that the server is written against, in the terms of the instrument's RTOS
// and with POSIX behind them here. A port replaces the .cpp files of this folder. docs/host.md
// describes each operation, what a port has to give, and the few places elsewhere that name the host.
//
// Clock, files and sockets are tables of functions (ClockOps, FileOps, SocketOps) that tests
// replace: the clock can be held and moved, files and sockets can fail, tear and vanish.
#pragma once

#include "platform/types.h"

#include <span>
#include <string>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace ied {

// ---------------------------------------------------------------------------------------- status

inline constexpr int OK = 0;
inline constexpr int ERROR = -1;
inline constexpr int WAIT_FOREVER = -1;
inline constexpr int NO_WAIT = 0;

// ----------------------------------------------------------------------------------------- tasks

// Argument of a task: a slot number or nothing of meaning; ten are handed over as the RTOS does.
using TaskArgument = long;
using TaskEntry = void (*)(TaskArgument);

// Handle and identity of a task, also the word that the watchdog peer sees. 0 is no task.
using TaskId = u32;

inline constexpr TaskId taskNone = 0;
inline constexpr u32 taskOptionFp = 0x1000000; // floating-point context

// What taskInfoGet knows of a task; the watchdog message carries two words of it.
struct TaskInfo {
    TaskId id;
    u32 word1;  // word 1 of the RTOS descriptor; here the task's priority
    u32 word25; // word at byte 100 of the RTOS descriptor; here the task's stack size
    char name[32];
};

// Starts `entry` as a task of its own. `priority` 0 (highest) to 255 takes effect as real-time
// scheduling only with platformOptions.realtime; `stackSize` in bytes; of the ten arguments the
// first reaches `entry`. Returns the task's id, or taskNone if the host refuses.
TaskId taskSpawn(const char *name, int priority, u32 options, u32 stackSize, TaskEntry entry,
                 TaskArgument arg1, TaskArgument arg2, TaskArgument arg3, TaskArgument arg4,
                 TaskArgument arg5, TaskArgument arg6, TaskArgument arg7, TaskArgument arg8,
                 TaskArgument arg9, TaskArgument arg10);

// The same with what all tasks of this process have in common: the option taskOptionFp and the
// numbers 2 to 10 behind the first argument.
TaskId spawnTask(const char *name, int priority, u32 stackSize, TaskEntry entry, TaskArgument argument);

// Waits for `ticks` tick edges: a delay of n ends on the n-th edge from now, 0 yields.
void taskDelay(int ticks);

// Ends the calling task. In the initial task it ends the process with status `code` & 255.
[[noreturn]] void taskExit(int code);

TaskId taskIdSelf();

// Name of a task, or of the calling one for taskNone; "tInit" for the initial task. Never null.
const char *taskName(TaskId task);

// Copies at most 31 characters of the task's name into `name` (32 bytes). OK or ERROR.
int taskNameGet(TaskId task, char *name);

// OK with `info` filled, ERROR for an unknown task.
int taskInfoGet(TaskId task, TaskInfo *info);

// Seconds of host time, as the C library's sleep.
void sleepSeconds(unsigned seconds);

// ------------------------------------------------------------------------------------ semaphores

struct Semaphore; // mutex, binary or reader-writer
using SemId = Semaphore *;

inline constexpr u32 semQFifo = 0x0;
inline constexpr u32 semQPriority = 0x1;
inline constexpr u32 semDeleteSafe = 0x4;
inline constexpr u32 semInversionSafe = 0x8;
inline constexpr int semEmpty = 0;
inline constexpr int semFull = 1;
inline constexpr int semTypeMutex = 1;

// Recursive mutex, private to the process. Null if the host refuses.
SemId semMCreate(u32 options);
// Binary semaphore, empty or full at first.
SemId semBCreate(u32 options, int initialState);
// Reader-writer semaphore with at most `maxReaders` readers at once.
SemId semRWCreate(u32 options, int maxReaders);
// Named mutex ("/name", plus the instance's suffix), shared between processes and recovered when
// its holder dies. Opened, or made free when it does not exist; the same handle for each opening.
// Null on failure, and for another type than a mutex.
SemId semOpen(const char *name, int type, int initialState, u32 options, u32 mode);
// Takes a mutex or binary semaphore. `ticks` is a time-out in ticks, NO_WAIT or WAIT_FOREVER.
int semTake(SemId semaphore, int ticks);
int semGive(SemId semaphore);
// Takes the read side or the write side of a reader-writer semaphore; given back by semGive.
int semRTake(SemId semaphore, int ticks);
int semWTake(SemId semaphore, int ticks);
// Frees a semaphore that nobody holds or awaits. Null is allowed; a named one stays open.
void semDelete(SemId semaphore);

// -------------------------------------------------------------------------------- message queues

struct MessageQueue;
using MsgQId = MessageQueue *;

// Opens the queue `name`, or makes it for `maxMessages` records of `maxLength` octets. A name with
// a leading "/" is shared between processes (plus the instance's suffix) and survives the death
// of either side; any other is private to this process. Null on failure.
MsgQId msgQOpen(const char *name, int maxMessages, int maxLength, u32 options, u32 mode, int context);
// Sends a record of at most `maxLength` octets. With `ticks` NO_WAIT a full queue is ERROR at once.
int msgQSend(MsgQId queue, const void *record, u32 length, int ticks, int priority);
// Receives the oldest record into `record` (`maxLength` octets at hand). Its length, or ERROR.
int msgQReceive(MsgQId queue, void *record, u32 maxLength, int ticks);

// ----------------------------------------------------------------------------------- shared data

// Maps the named shared region (plus the instance's suffix), made at `size` bytes when it does not
// exist; the rest of the RTOS call's arguments have no meaning here. Zero-filled where new, sparse.
// Returns the base, or null on failure.
void *sdOpen(const char *name, int options, u32 mode, u32 size, u64 physicalAddress, u32 attributes);

// ----------------------------------------------------------------------------------------- clock

struct ClockOps {
    u64 (*monotonicNs)();               // host time that never jumps, nanoseconds
    void (*realTime)(TimeStamp *out);   // UTC with quality 10
    void (*sleepUntilNs)(u64 deadline); // returns at or after that monotonic time
};
extern ClockOps clockOps; // replaced by tests only

// Ticks since start, at tickRate of the configuration record; wraps at 32 bits.
u32 tickGet();
// Sets the tick rate (ticks per second, 1 to 1000); called once before any task starts.
void sysClkRateSet(u32 ticksPerSecond);
u32 sysClkRateGet();
// Nanoseconds of the monotonic host clock; for measuring only.
u64 monotonicNs();

// A clock that stands still until moved, for tests: heldClockStart() replaces clockOps,
// heldClockAdvance() moves it (delays of other tasks that fall due are released), a taskDelay of
// the calling task moves it by itself when `movesItself` is set. heldClockStop() puts the host's
// clock back.
void heldClockStart(u32 utcSeconds, bool movesItself);
void heldClockAdvance(u64 milliseconds);
void heldClockStop();

// ----------------------------------------------------------------------------------------- files

inline constexpr int FIOFLUSH = 2;   // bring what was written to the medium
inline constexpr int FIOTRUNC = 42;  // cut or extend the file to the argument
inline constexpr int FIOCONTIG = 36; // reserve the argument's number of bytes in one piece; the size stays

// File operations of the device's file systems. Paths are device paths ("/tffs0/..."), which go
// through platformOptions.root; results and errno are those of the POSIX call of the same name.
struct FileOps {
    int (*open)(const char *path, int flags, unsigned mode);
    long (*read)(int fd, void *buffer, std::size_t length);
    long (*write)(int fd, const void *buffer, std::size_t length);
    i64 (*lseek)(int fd, i64 offset, int whence);
    int (*close)(int fd);
    int (*ioctl)(int fd, int code, i64 argument);
    int (*stat)(const char *path, struct ::stat *out);
    int (*fstat)(int fd, struct ::stat *out);
    int (*access)(const char *path, int mode);
    int (*mkdir)(const char *path, unsigned mode);
    int (*remove)(const char *path);
    int (*rename)(const char *from, const char *to);
};
extern FileOps fileOps; // replaced by tests only

// Host path of a device path: root + path. The clock device is not a file and stays as it is.
std::string hostPath(const char *devicePath);

// --------------------------------------------------------------------------------------- devices

// Opens the clock device "/unix". A descriptor of this layer's own, or ERROR.
int clockDeviceOpen(const char *name);
// Reads the time of the clock device, as ioctl(fd, 0, out) does on the RTOS. OK or ERROR.
int clockDeviceRead(int fd, TimeStamp *out);

// --------------------------------------------------------------------------------------- sockets

// Socket calls with the results and errno of the POSIX call of the same name.
struct SocketOps {
    int (*socket)(int domain, int type, int protocol);
    int (*setsockopt)(int fd, int level, int name, const void *value, u32 length);
    int (*getsockopt)(int fd, int level, int name, void *value, u32 *length);
    int (*bind)(int fd, const ::sockaddr *address, u32 length);
    int (*listen)(int fd, int backlog);
    int (*accept)(int fd, ::sockaddr *address, u32 *length);
    int (*select)(int width, ::fd_set *read, ::fd_set *write, ::fd_set *except, ::timeval *timeout);
    long (*recv)(int fd, void *buffer, std::size_t length, int flags);
    long (*send)(int fd, const void *buffer, std::size_t length, int flags); // never raises SIGPIPE
    int (*setNonBlocking)(int fd, bool on);                                  // ioctl FIONBIO
    int (*shutdown)(int fd, int how);
    int (*close)(int fd);
};
extern SocketOps socketOps; // replaced by tests only

// -------------------------------------------------------------------------------------- the host

// What the command line of the host says; written before taskMain, read-only afterwards.
struct PlatformOptions {
    std::string root;        // host folder that stands in for "/" of device paths; "" is "/"
    std::string instance;    // names of shared objects end in "." + instance unless it is empty
    std::string bindAddress; // IPv4 address to listen on; empty is any
    bool realtime = false;   // real-time scheduling where permitted
};
extern PlatformOptions &platformOptions; // lives as long as the process, its end included

// What is wrong with a name of an instance, which becomes a part of names of files; empty for a sound
// one. The empty name is sound.
std::string instanceNameProblem(const std::string &name);

// Name of a shared object for this instance: "/sd_commdata" becomes "/sd_commdata.NAME".
std::string sharedName(const char *name);

// The shared objects that each instance has, by the names under which they are opened.
struct SharedNames {
    const char *region;                  // may be made and mapped by a program that takes no file lock
    std::span<const char *const> locked; // mutexes and queues: only ever made by this layer
};

// Removes shared objects of instances whose processes have all ended. Called at a start.
void sweepSharedObjects(const SharedNames &names);
// Removes the shared objects of this instance; for tools and tests that own it.
void removeSharedObjects(const SharedNames &names);

// Keeps the text of a failure, so that the error record that may follow can carry it. Kept per
// task: the latest six, cut at 511 octets each. Null or empty forgets them.
void noteFailure(const char *text);

// True in the initial task, the one that the process began with.
bool taskIsInitial();

// The platform's error recorder: one line on the standard error stream (kind, source path, line,
// text and the failures of this task that noteFailure kept, oldest first) and in the system log.
void edrErrorInject(int kind, const char *sourcePath, int line, int a, int b, const char *text);

// Ends the process as an orderly stop does: runs the registered flushes, then exits. Safe while
// other tasks run; every end of the process goes through here, so that two tasks never run it at
// once. With installEndSignals in force an end that hangs (a terminal that takes no more) is cut
// short after 3 seconds.
[[noreturn]] void processExit(int status);
// Registers what an end by SIGINT, SIGTERM or processExit has to flush. At most eight.
void atProcessEnd(void (*flush)());
// Makes SIGINT and SIGTERM end the process with status 0 after the registered flushes, whatever
// its tasks wait for. Called once, in the initial task, before any other task starts.
void installEndSignals();

} // namespace ied
