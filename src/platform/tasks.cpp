#include "platform/platform.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ied {

namespace {

// What is kept of a task. A record of the table is taken while `id` is not taskNone.
struct TaskRecord {
    TaskId id;
    int priority;
    u32 stackSize;
    char name[64];
};

constexpr int maxTasks = 1024;

struct TaskTable {
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER; // guards ids and the taking of records
    TaskRecord records[maxTasks] = {};
    int used = 0; // records from here on were never taken
};
TaskTable table;

struct TableLock {
    TableLock() { pthread_mutex_lock(&table.lock); }
    ~TableLock() { pthread_mutex_unlock(&table.lock); }
    TableLock(const TableLock &) = delete;
    TableLock &operator=(const TableLock &) = delete;
};

thread_local TaskRecord *self;
// Threads that taskSpawn did not start: the initial task and threads of the host.
thread_local TaskRecord foreign;

TaskId hostThreadId() {
    return static_cast<TaskId>(syscall(SYS_gettid));
}

TaskRecord *selfRecord() {
    if (self == nullptr) {
        foreign.id = hostThreadId();
        foreign.priority = 255;
        const bool initial = foreign.id == static_cast<TaskId>(getpid());
        std::snprintf(foreign.name, sizeof foreign.name, "%s", initial ? "tInit" : "tHost");
        self = &foreign;
    }
    return self;
}

TaskRecord *findTask(TaskId task) { // with the table's lock held
    const auto end = table.records + table.used;
    const auto found = std::find_if(table.records, end, [task](const TaskRecord &r) { return r.id == task; });
    return found == end ? nullptr : found;
}

TaskRecord *takeRecord() {
    const TableLock lock;
    TaskRecord *record = findTask(taskNone);
    if (record == nullptr && table.used < maxTasks) {
        record = &table.records[table.used++];
    }
    if (record != nullptr) {
        record->id = UINT_MAX; // taken, not running yet
    }
    return record;
}

void releaseRecord(TaskRecord *record) {
    const TableLock lock;
    record->id = taskNone;
}

// The room that the host's calls and wider words need beyond the stack that the instrument gives.
std::size_t hostStackSize(u32 stackSize) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t factor = 4;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    constexpr std::size_t factor = 4;
#else
    constexpr std::size_t factor = 2;
#endif
#else
    constexpr std::size_t factor = 2;
#endif
    constexpr std::size_t margin = 256 * 1024;
    constexpr std::size_t page = 4096;
    return (stackSize * factor + margin) / page * page;
}

// The priorities in use lie between 200 and 247 and keep their order; what is higher shares the
// host's highest.
void useRealtime(int priority) {
    sched_param parameters{};
    parameters.sched_priority = std::clamp(256 - priority, 1, 99);
    if (pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameters) != 0) {
        static bool told;
        if (!std::atomic_ref<bool>(told).exchange(true)) {
            std::fputs("ied-server: real-time scheduling is not permitted, tasks run as plain threads\n",
                       stderr);
        }
    }
}

struct TaskStart {
    TaskRecord *record;
    TaskEntry entry;
    TaskArgument argument;
    pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t started = PTHREAD_COND_INITIALIZER;
    TaskId id = taskNone;
};

// Gives the record back however the task ends, pthread_exit included.
struct RecordOwner {
    TaskRecord *record;
    ~RecordOwner() { releaseRecord(record); }
};

void *runTask(void *argument) {
    auto *start = static_cast<TaskStart *>(argument);
    const RecordOwner owner{start->record};
    self = start->record;
    char shortName[16];
    std::snprintf(shortName, sizeof shortName, "%.15s", start->record->name);
    pthread_setname_np(pthread_self(), shortName);
    if (platformOptions.realtime) {
        useRealtime(start->record->priority);
    }
    const TaskEntry entry = start->entry;
    const TaskArgument first = start->argument;
    const TaskId id = hostThreadId();
    {
        const TableLock lock;
        start->record->id = id;
    }
    pthread_mutex_lock(&start->lock);
    start->id = id;
    pthread_cond_signal(&start->started);
    pthread_mutex_unlock(&start->lock); // `start` is the spawner's and gone from here on
    entry(first);
    return nullptr;
}

bool startThread(TaskStart *start, std::size_t stackSize) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) {
        return false;
    }
    pthread_t thread;
    const bool started = pthread_attr_setstacksize(&attributes, stackSize) == 0 &&
                         pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED) == 0 &&
                         pthread_create(&thread, &attributes, runTask, start) == 0;
    pthread_attr_destroy(&attributes);
    return started;
}

} // namespace

TaskId taskSpawn(const char *name, int priority, u32 /*options*/, u32 stackSize, TaskEntry entry,
                 TaskArgument arg1, TaskArgument, TaskArgument, TaskArgument, TaskArgument, TaskArgument,
                 TaskArgument, TaskArgument, TaskArgument, TaskArgument) {
    TaskRecord *record = takeRecord();
    if (record == nullptr) {
        return taskNone;
    }
    record->priority = priority;
    record->stackSize = stackSize;
    std::snprintf(record->name, sizeof record->name, "%s", name);
    TaskStart start{record, entry, arg1};
    if (!startThread(&start, hostStackSize(stackSize))) {
        releaseRecord(record);
        return taskNone;
    }
    pthread_mutex_lock(&start.lock);
    while (start.id == taskNone) {
        pthread_cond_wait(&start.started, &start.lock);
    }
    pthread_mutex_unlock(&start.lock);
    return start.id;
}

TaskId spawnTask(const char *name, int priority, u32 stackSize, TaskEntry entry, TaskArgument argument) {
    return taskSpawn(name, priority, taskOptionFp, stackSize, entry, argument, 2, 3, 4, 5, 6, 7, 8, 9, 10);
}

void taskExit(int code) {
    if (taskIsInitial()) {
        processExit(code & 255);
    }
    pthread_exit(nullptr);
}

TaskId taskIdSelf() {
    return selfRecord()->id;
}

// Asked of the host each time, for a child that a test forks is an initial task too.
bool taskIsInitial() {
    return (self == nullptr || self == &foreign) && hostThreadId() == static_cast<TaskId>(getpid());
}

const char *taskName(TaskId task) {
    if (task == taskNone || task == taskIdSelf()) {
        return selfRecord()->name;
    }
    if (task == static_cast<TaskId>(getpid())) {
        return "tInit";
    }
    const TableLock lock;
    const TaskRecord *record = findTask(task);
    return record == nullptr ? "" : record->name;
}

int taskInfoGet(TaskId task, TaskInfo *info) {
    TaskRecord copy{};
    if (task == taskNone || task == taskIdSelf()) {
        copy = *selfRecord();
    } else {
        const TableLock lock;
        const TaskRecord *record = findTask(task);
        if (record == nullptr) {
            return ERROR;
        }
        copy = *record;
    }
    *info = {copy.id, static_cast<u32>(copy.priority), copy.stackSize, {}};
    std::snprintf(info->name, sizeof info->name, "%.31s", copy.name);
    return OK;
}

int taskNameGet(TaskId task, char *name) {
    TaskInfo info;
    if (taskInfoGet(task, &info) != OK) {
        return ERROR;
    }
    std::memcpy(name, info.name, sizeof info.name);
    return OK;
}

} // namespace ied
