/* Lets one call on a till's files fail, or kills the till there. Preloaded by the sweep.
 *
 * FAULT_FILES  the data directory: calls on what lies in it are counted, but for the log
 * FAULT_AT     the number of the call to fail, from 1; 0 for none
 * FAULT_FOR    how many calls in a row fail; 0 for all from there on
 * FAULT_KIND   an errno, or "short" (half of it is written), or "kill"
 * FAULT_COUNT  a file that the number of calls is written to at the end
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

enum { descriptors = 4096 };

static char ours[descriptors];
static atomic_long calls;
static const char *files, *kind;
static long at, lasting;

#define REAL(name) ((typeof(&name)) real(#name))

static void *real(const char *name)
{
    return dlsym(RTLD_NEXT, name);
}

__attribute__((constructor)) static void begin(void)
{
    files = getenv("FAULT_FILES");
    kind = getenv("FAULT_KIND");
    at = getenv("FAULT_AT") ? atol(getenv("FAULT_AT")) : 0;
    lasting = getenv("FAULT_FOR") ? atol(getenv("FAULT_FOR")) : 1;
}

__attribute__((destructor)) static void end(void)
{
    const char *name = getenv("FAULT_COUNT");
    FILE *file = name ? fopen(name, "w") : NULL;
    if (!file)
        return;
    fprintf(file, "%ld\n", (long) calls);
    fclose(file);
}

static int isOurs(const char *path)
{
    const size_t length = files ? strlen(files) : 0;
    return length && strncmp(path, files, length) == 0 && !strstr(path, "till.log");
}

/* Whether this call is to fail; counts it. */
static int fails(void)
{
    const long number = ++calls;
    if (!at || number < at || (lasting && number >= at + lasting))
        return 0;
    if (strcmp(kind, "kill") == 0)
        raise(SIGKILL);
    errno = atoi(kind);
    return 1;
}

static int isShort(void)
{
    return strcmp(kind, "short") == 0;
}

static int failsOn(int descriptor)
{
    return descriptor >= 0 && descriptor < descriptors && ours[descriptor] && fails();
}

/* Calls that write nothing cannot be short: they fail as on a full disk. */
static int failed(void)
{
    if (isShort())
        errno = ENOSPC;
    return -1;
}

static int opened(int descriptor, const char *path)
{
    if (descriptor >= 0 && descriptor < descriptors)
        ours[descriptor] = (char) isOurs(path);
    return descriptor;
}

#define OPEN(name)                                                                                 \
    int name(const char *path, int flags, ...)                                                     \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, flags);                                                                \
        const mode_t mode = va_arg(arguments, mode_t);                                             \
        va_end(arguments);                                                                         \
        return isOurs(path) && fails() ? failed() : opened(REAL(name)(path, flags, mode), path);   \
    }
OPEN(open)
OPEN(open64)

int close(int descriptor)
{
    if (descriptor >= 0 && descriptor < descriptors)
        ours[descriptor] = 0;
    return REAL(close)(descriptor);
}

#define READ(name, offset)                                                                         \
    ssize_t name(int descriptor, void *to, size_t size, offset position)                           \
    {                                                                                              \
        return failsOn(descriptor) ? failed() : REAL(name)(descriptor, to, size, position);        \
    }
READ(pread, off_t)
READ(pread64, off64_t)

#define WRITE(name, offset)                                                                        \
    ssize_t name(int descriptor, const void *from, size_t size, offset position)                   \
    {                                                                                              \
        if (!failsOn(descriptor))                                                                  \
            return REAL(name)(descriptor, from, size, position);                                   \
        return isShort() && size > 1 ? REAL(name)(descriptor, from, size / 2, position)            \
                                     : failed();                                                   \
    }
WRITE(pwrite, off_t)
WRITE(pwrite64, off64_t)

ssize_t read(int descriptor, void *to, size_t size)
{
    return failsOn(descriptor) ? failed() : REAL(read)(descriptor, to, size);
}

ssize_t write(int descriptor, const void *from, size_t size)
{
    if (!failsOn(descriptor))
        return REAL(write)(descriptor, from, size);
    return isShort() && size > 1 ? REAL(write)(descriptor, from, size / 2) : failed();
}

#define ON_DESCRIPTOR(name, parameters, arguments)                                                 \
    int name parameters                                                                            \
    {                                                                                              \
        return failsOn(descriptor) ? failed() : REAL(name) arguments;                              \
    }
ON_DESCRIPTOR(fsync, (int descriptor), (descriptor))
ON_DESCRIPTOR(fdatasync, (int descriptor), (descriptor))
ON_DESCRIPTOR(ftruncate, (int descriptor, off_t size), (descriptor, size))
ON_DESCRIPTOR(ftruncate64, (int descriptor, off64_t size), (descriptor, size))
ON_DESCRIPTOR(fchmod, (int descriptor, mode_t mode), (descriptor, mode))
ON_DESCRIPTOR(flock, (int descriptor, int operation), (descriptor, operation))

/* Locks: SQLite's way to keep processes apart. */
#define CONTROL(name)                                                                              \
    int name(int descriptor, int command, ...)                                                     \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, command);                                                              \
        void *argument = va_arg(arguments, void *);                                                \
        va_end(arguments);                                                                         \
        const int locks = command == F_SETLK || command == F_SETLKW;                               \
        return locks && failsOn(descriptor) ? failed()                                             \
                                            : REAL(name)(descriptor, command, argument);           \
    }
CONTROL(fcntl)
CONTROL(fcntl64)

#define ON_PATH(name, parameters, arguments)                                                       \
    int name parameters                                                                            \
    {                                                                                              \
        return isOurs(path) && fails() ? failed() : REAL(name) arguments;                          \
    }
ON_PATH(unlink, (const char *path), (path))
ON_PATH(mkdir, (const char *path, mode_t mode), (path, mode))
ON_PATH(chmod, (const char *path, mode_t mode), (path, mode))
ON_PATH(rename, (const char *path, const char *to), (path, to))
ON_PATH(linkat, (int from, const char *path, int directory, const char *to, int flags),
        (from, path, directory, to, flags))
