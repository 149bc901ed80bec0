// SPDX-License-Identifier: MIT
// A library to be preloaded (LD_PRELOAD) that lets calls of the C library go wrong under the program as it is shipped.
// FYRN_FAULT holds one plan; every injected fault writes a byte to the descriptor that FYRN_FAULT_LOG names:
//
//   fail CALL FIRST COUNT ERRNO    the calls FIRST to FIRST + COUNT - 1 fail; the first one has number 1
//   storm CALL COUNT               every call fails COUNT times with EINTR before it goes through
//   short CALL BYTES               every call moves at most so many bytes
//   eio BYTES                      reading any file fails behind so many bytes
//   vanish CALL FIRST PATH         before that call the file PATH is removed
//   truncate CALL FIRST PATH       ... is cut to one byte
//   swap CALL FIRST PATH           ... PATH, a directory, is moved to PATH.away, and a file put in its place
//   pipe CALL FIRST PATH           ... a pipe takes the place of the file PATH
//   untyped readdir                directories do not tell what kind their entries are
//   kill CALL FIRST                before that call the process is killed, as by a power cut
//
// CALL is any, or one or more, with commas, of read, write, open, close, stat (all its forms), fstat, opendir, readdir,
// chdir, fchdir, getcwd, renameat2, rename, link, unlink, fsync, fchown and malloc.
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" void* __libc_malloc(size_t size);

namespace {

template <class Function>
Function* Real(Function*& known, const char* name) {
    if (known == nullptr)
        known = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
    return known;
}

// The original of a function, looked up once.
#define REAL(name)                                                                                           \
    ([] {                                                                                                    \
        static decltype(name)* known;                                                                        \
        return Real(known, #name);                                                                           \
    }())

enum class Kind { None, Fail, Storm, Short, Eio, Untyped, Vanish, Truncate, Swap, Pipe, Kill };

// Read without allocating: malloc asks for it, too.
struct Plan {
    Kind kind = Kind::None;
    char call[64] = "";
    long first = 0;
    long count = 0;
    int error = 0;
    const char* path = "";
    int log = -1;
};

const char* Word(const char* text, char* word, std::size_t capacity) {
    while (*text == ' ')
        ++text;
    std::size_t length = 0;
    for (; *text != '\0' && *text != ' '; ++text)
        if (length + 1 < capacity)
            word[length++] = *text;
    word[length] = '\0';
    return text;
}

const char* Number(const char* text, long& number) {
    char* end;
    number = std::strtol(text, &end, 10);
    return end;
}

Kind KindNamed(const char* name) {
    const char* const names[] = {"none",   "fail",     "storm", "short", "eio", "untyped",
                                 "vanish", "truncate", "swap",  "pipe",  "kill"};
    for (std::size_t i = 0; i < sizeof names / sizeof *names; ++i)
        if (std::strcmp(name, names[i]) == 0)
            return static_cast<Kind>(i);
    return Kind::None;
}

Plan ReadPlan() {
    Plan plan;
    const char* text = getenv("FYRN_FAULT");
    const char* const log = getenv("FYRN_FAULT_LOG");
    if (text == nullptr || log == nullptr)
        return plan;
    plan.log = static_cast<int>(std::strtol(log, nullptr, 10));
    char kind[16];
    long error = 0;
    text = Word(text, kind, sizeof kind);
    plan.kind = KindNamed(kind);
    if (plan.kind != Kind::Eio)
        text = Word(text, plan.call, sizeof plan.call);
    text = Number(text, plan.first);
    if (plan.kind == Kind::Fail)
        Number(Number(text, plan.count), error);
    plan.error = static_cast<int>(error);
    plan.path = *text == ' ' ? text + 1 : text;
    return plan;
}

const Plan& ThePlan() {
    static bool known = false;
    static Plan plan;
    if (!known) {
        known = true; // also where reading it gets here again
        plan = ReadPlan();
    }
    return plan;
}

void Log() {
    const int error = errno;
    syscall(SYS_write, ThePlan().log, "!", 1);
    errno = error;
}

// Whether the call is one of the plan's.
bool Concerns(const char* call) {
    const std::size_t length = std::strlen(call);
    for (const char* place = ThePlan().call; place != nullptr; place = std::strchr(place, ',')) {
        place += *place == ',' ? 1 : 0;
        if (std::strncmp(place, call, length) == 0 && (place[length] == ',' || place[length] == '\0'))
            return true;
    }
    return std::strcmp(ThePlan().call, "any") == 0;
}

void Swap(const char* path) {
    char away[4096];
    const std::size_t length = std::strlen(path);
    if (length + sizeof ".away" > sizeof away)
        return;
    std::memcpy(away, path, length);
    std::memcpy(away + length, ".away", sizeof ".away");
    syscall(SYS_rename, path, away);
    const long file = syscall(SYS_open, path, O_WRONLY | O_CREAT, 0600);
    syscall(SYS_write, file, "swapped", 7);
    syscall(SYS_close, file);
}

void PutPipe(const char* path) {
    syscall(SYS_unlink, path);
    syscall(SYS_mknod, path, S_IFIFO | 0600, 0L);
}

void Act() {
    const Plan& plan = ThePlan();
    if (plan.kind == Kind::Kill) {
        Log();
        raise(SIGKILL);
    }
    if (plan.kind == Kind::Vanish)
        syscall(SYS_unlink, plan.path);
    else if (plan.kind == Kind::Truncate)
        syscall(SYS_truncate, plan.path, 1L);
    else if (plan.kind == Kind::Pipe)
        PutPipe(plan.path);
    else
        Swap(plan.path);
    Log();
}

// Counts a call; true, with errno set, when it is to fail.
bool Fails(const char* call) {
    static long calls = 0;
    static long interrupted = 0;
    const Plan& plan = ThePlan();
    if (plan.kind == Kind::None || !Concerns(call))
        return false;
    if (plan.kind == Kind::Storm) {
        if (interrupted++ % (plan.first + 1) == plan.first)
            return false;
        errno = EINTR;
        Log();
        return true;
    }
    ++calls;
    if (plan.kind >= Kind::Vanish && calls == plan.first)
        Act();
    if (plan.kind != Kind::Fail || calls < plan.first || calls - plan.first >= plan.count)
        return false;
    errno = plan.error;
    Log();
    return true;
}

std::size_t Shortened(const char* call, std::size_t count) {
    const Plan& plan = ThePlan();
    if (plan.kind != Kind::Short || !Concerns(call) || count <= static_cast<std::size_t>(plan.first))
        return count;
    Log();
    return static_cast<std::size_t>(plan.first);
}

// Whether the descriptor's position is behind the bytes that can be read; shortens a read up to there.
bool ReadsBadSector(int descriptor, std::size_t& count) {
    const Plan& plan = ThePlan();
    struct stat status;
    if (plan.kind != Kind::Eio || syscall(SYS_fstat, descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    const long left = plan.first - static_cast<long>(lseek(descriptor, 0, SEEK_CUR));
    if (left > 0) {
        count = count < static_cast<std::size_t>(left) ? count : static_cast<std::size_t>(left);
        return false;
    }
    errno = EIO;
    Log();
    return true;
}

ssize_t Read(int descriptor, void* buffer, std::size_t count) {
    if (Fails("read") || ReadsBadSector(descriptor, count))
        return -1;
    return REAL(read)(descriptor, buffer, Shortened("read", count));
}

} // namespace

extern "C" {

ssize_t read(int descriptor, void* buffer, size_t count) {
    return Read(descriptor, buffer, count);
}

// What read becomes where the compiler checks the size of buffers.
ssize_t __read_chk(int descriptor, void* buffer, size_t count, size_t) {
    return Read(descriptor, buffer, count);
}

ssize_t write(int descriptor, const void* buffer, size_t count) {
    return Fails("write") ? -1 : REAL(write)(descriptor, buffer, Shortened("write", count));
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode =
        (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return Fails("open") ? -1 : REAL(open)(path, flags, mode);
}

int __open_2(const char* path, int flags) {
    return Fails("open") ? -1 : REAL(open)(path, flags, 0);
}

// As on Linux: a close that is interrupted, or fails, has closed nevertheless.
int close(int descriptor) {
    const int result = REAL(close)(descriptor);
    return Fails("close") ? -1 : result;
}

int stat(const char* path, struct stat* status) {
    return Fails("stat") ? -1 : REAL(stat)(path, status);
}

int lstat(const char* path, struct stat* status) {
    return Fails("stat") ? -1 : REAL(lstat)(path, status);
}

int fstat(int descriptor, struct stat* status) {
    return Fails("stat") || Fails("fstat") ? -1 : REAL(fstat)(descriptor, status);
}

DIR* opendir(const char* path) {
    return Fails("opendir") ? nullptr : REAL(opendir)(path);
}

dirent* readdir(DIR* stream) {
    dirent* const found = Fails("readdir") ? nullptr : REAL(readdir)(stream);
    if (found != nullptr && ThePlan().kind == Kind::Untyped) {
        found->d_type = DT_UNKNOWN;
        Log();
    }
    return found;
}

int chdir(const char* path) {
    return Fails("chdir") ? -1 : REAL(chdir)(path);
}

int fchdir(int descriptor) {
    return Fails("fchdir") ? -1 : REAL(fchdir)(descriptor);
}

char* getcwd(char* buffer, size_t capacity) {
    return Fails("getcwd") ? nullptr : REAL(getcwd)(buffer, capacity);
}

char* __getcwd_chk(char* buffer, size_t capacity, size_t) {
    return Fails("getcwd") ? nullptr : REAL(getcwd)(buffer, capacity);
}

int rename(const char* from, const char* to) {
    return Fails("rename") ? -1 : REAL(rename)(from, to);
}

int linkat(int fromDirectory, const char* from, int toDirectory, const char* to, int flags) {
    return Fails("link") ? -1 : REAL(linkat)(fromDirectory, from, toDirectory, to, flags);
}

int unlink(const char* path) {
    return Fails("unlink") ? -1 : REAL(unlink)(path);
}

int fsync(int descriptor) {
    return Fails("fsync") ? -1 : REAL(fsync)(descriptor);
}

int fchown(int descriptor, uid_t owner, gid_t group) {
    return Fails("fchown") ? -1 : REAL(fchown)(descriptor, owner, group);
}

// Only renameat2 is called by number.
long syscall(long number, ...) {
    va_list list;
    va_start(list, number);
    long arguments[6];
    for (long& argument : arguments)
        argument = va_arg(list, long);
    va_end(list);
    if (number == SYS_renameat2 && Fails("renameat2"))
        return -1;
    return REAL(syscall)(number, arguments[0], arguments[1], arguments[2], arguments[3], arguments[4],
                         arguments[5]);
}

void* malloc(size_t size) {
    return Fails("malloc") ? nullptr : __libc_malloc(size);
}

} // extern "C"
