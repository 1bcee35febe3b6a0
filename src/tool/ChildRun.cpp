#include "tool/ChildRun.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace kva {

namespace {

// While it lives, the signals that runInChild() waits for are held back.
class HeldSignals {
  public:
    HeldSignals() {
        sigemptyset(&Held);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
            sigaddset(&Held, signal);
        }
        sigprocmask(SIG_BLOCK, &Held, &Before);
    }
    ~HeldSignals() { release(); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    void release() const { sigprocmask(SIG_SETMASK, &Before, nullptr); }

    // The next of them.
    int wait() const {
        int signal = 0;
        while (sigwait(&Held, &signal) != 0) {
        }
        return signal;
    }

  private:
    sigset_t Held;
    sigset_t Before;
};

[[noreturn]] void doWork(const std::function<int()>& work, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // no work goes on for nobody
    if (getppid() != parent) {
        _exit(1);
    }
    std::exit(work());
}

} // namespace

ChildEnd runInChild(const std::function<int()>& work) {
    std::cout.flush(); // or the child would write it again
    (void)std::fflush(nullptr);
    const HeldSignals held;
    const pid_t self = getpid();
    const pid_t child = fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "cannot start the run");
    }
    if (child == 0) {
        held.release();
        doWork(work, self);
    }
    ChildEnd end;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        const int signal = held.wait();
        if (signal != SIGCHLD && end.Stopped == 0) {
            end.Stopped = signal;
            kill(child, SIGKILL);
        }
    }
    end.Status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    end.Signal = WIFSIGNALED(status) && end.Stopped == 0 ? WTERMSIG(status) : 0;
    return end;
}

} // namespace kva
