#pragma once

#include <QtGlobal>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

/// Simulates a full disk while it lives: no file grows beyond `size` bytes.
class FullDisk
{
public:
    explicit FullDisk(rlim_t size)
        : signalBefore(::signal(SIGXFSZ, SIG_IGN)) // so that the write fails
    {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit limit{size, before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FullDisk()
    {
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
        (void)::signal(SIGXFSZ, signalBefore);
    }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    void (*signalBefore)(int);
    rlimit before{};
};
