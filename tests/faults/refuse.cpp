// A library to preload: it lets one system call of a program fail, so that a test can try each of
// them in turn.
//
//     KVA_REFUSE="write 17 28"        the 17th write (from 1) fails with error number 28
//     KVA_REFUSE="write 17 28 on"     ... and each after it, but for those to the console
//     KVA_REFUSE="mkdir 5 0 link X"   a symbolic link to X stands there when the 5th folder is made
//     KVA_REFUSE="open 5 0 link X"    ... or the 5th file is opened
//     KVA_REFUSE="mkdir 1 0 cut X"    when the 1st folder is made the file X is cut to half; with
//                                     "grow" it is doubled, with "drop" removed
//     KVA_REFUSE="malloc 9 12"        the 9th allocation gives no memory; the number is not used
//     KVA_REFUSE_COUNTS=FILE          at the end FILE tells how many of each there were, a line
//     each
//
// Calls are caught at the door of the kernel by a filter (seccomp) that raises SIGSYS, whose
// handler makes the call itself, marked by a sixth argument that no caller uses. Counting begins
// with the program's own main, behind the loader, and goes on over its child processes, which it
// is taken to wait for.
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

namespace {

constexpr uint32_t kMark = 0x4B56'4131; // the sixth argument of calls that are let through

struct Kind {
    const char* Name;
    long Call;        // its number
    long Refused = 0; // the one that fails, from 1; 0: none
};

Kind kinds[] = {{"malloc", -1},          {"open", SYS_openat},        {"write", SYS_write},
                {"close", SYS_close},    {"mkdir", SYS_mkdir},        {"chdir", SYS_chdir},
                {"fchdir", SYS_fchdir},  {"read", SYS_read},          {"lseek", SYS_lseek},
                {"fork", SYS_clone},     {"rename", SYS_rename},      {"unlink", SYS_unlink},
                {"rmdir", SYS_unlinkat}, {"renameat", SYS_renameat2}, {"fsync", SYS_fsync}};
constexpr auto kKinds = sizeof kinds / sizeof *kinds;
long* made = nullptr; // of each kind so far; in memory that child processes share
int refusal = EIO;
char action[8] = "";   // the fourth word; empty: none
char target[256] = ""; // the fifth
bool counting = false;

long callMarked(long number, const greg_t* r) {
    long result = number;
    register long r10 asm("r10") = r[REG_R10];
    register long r8 asm("r8") = r[REG_R8];
    register long r9 asm("r9") = kMark;
    asm volatile("syscall"
                 : "+a"(result)
                 : "D"(r[REG_RDI]), "S"(r[REG_RSI]), "d"(r[REG_RDX]), "r"(r10), "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    return result;
}

// Changes the file in the middle of a run.
void changeFile() {
    const int file = open(target, O_RDWR | O_APPEND);
    const off_t size = lseek(file, 0, SEEK_END);
    if (std::strcmp(action, "cut") == 0) {
        (void)!ftruncate(file, size / 2);
    } else if (std::strcmp(action, "drop") == 0) {
        unlink(target);
    } else {
        static char bytes[1 << 16];
        const ssize_t got = pread(file, bytes, sizeof bytes, 0);
        (void)!write(file, bytes, static_cast<std::size_t>(got));
    }
    close(file);
}

// What the order has for its call: true if the call fails.
bool meddle(const Kind& kind, const greg_t* registers) {
    if (action[0] == '\0' || std::strcmp(action, "on") == 0) {
        return true;
    }
    counting = false;
    if (std::strcmp(action, "link") == 0) {
        const greg_t path = registers[kind.Call == SYS_mkdir ? REG_RDI : REG_RSI];
        (void)!symlink(target, reinterpret_cast<const char*>(path));
    } else {
        changeFile();
    }
    counting = true;
    return false;
}

// Whether the order means this call of its kind.
bool isMeant(const Kind& kind, const greg_t* registers) {
    if (std::strcmp(action, "on") == 0) {
        return kind.Refused > 0 && made[&kind - kinds] >= kind.Refused &&
               registers[REG_RDI] > STDERR_FILENO;
    }
    return made[&kind - kinds] == kind.Refused;
}

void onCall(int /*signal*/, siginfo_t* info, void* context) {
    greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    for (Kind& kind : kinds) {
        if (kind.Call == info->si_syscall && counting) {
            ++made[&kind - kinds];
            if (isMeant(kind, registers) && meddle(kind, registers)) {
                registers[REG_RAX] = -refusal;
                return;
            }
        }
    }
    registers[REG_RAX] = callMarked(info->si_syscall, registers);
}

void catchCalls() {
    struct sigaction handling = {};
    handling.sa_sigaction = onCall;
    handling.sa_flags = SA_SIGINFO | SA_NODEFER | SA_RESTART;
    sigaction(SIGSYS, &handling, nullptr);
    constexpr auto kCalls = kKinds - 1; // all but allocations
    sock_filter filter[5 + kCalls + 1] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[5])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kMark, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
    };
    std::size_t at = 4;
    for (std::size_t k = 0; k < kCalls; ++k, ++at) {
        const auto toTrap = static_cast<uint8_t>(kCalls - k);
        filter[at] = BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<uint32_t>(kinds[k + 1].Call),
                              toTrap, 0);
    }
    filter[at++] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW);
    filter[at++] = BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP);
    const sock_fprog program = {static_cast<unsigned short>(at), filter};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) {
        _exit(77); // no filters here: the test is to be skipped
    }
}

__attribute__((constructor)) void begin() {
    const char* const order = std::getenv("KVA_REFUSE");
    char name[16] = "";
    long number = 0;
    if (order != nullptr &&
        std::sscanf(order, "%15s %ld %d %7s %255s", name, &number, &refusal, action, target) >= 3) {
        for (Kind& kind : kinds) {
            kind.Refused = std::strcmp(kind.Name, name) == 0 ? number : 0;
        }
    }
    made = static_cast<long*>(mmap(nullptr, kKinds * sizeof *made, PROT_READ | PROT_WRITE,
                                   MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    catchCalls();
    counting = true;
}

__attribute__((destructor)) void end() {
    counting = false;
    const char* const path = std::getenv("KVA_REFUSE_COUNTS");
    if (path == nullptr) {
        return;
    }
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    for (std::size_t k = 0; k < kKinds; ++k) {
        dprintf(file, "%s %ld\n", kinds[k].Name, made[k]);
    }
    close(file);
}

} // namespace

extern "C" void* malloc(std::size_t size) {
    static auto* const original =
        reinterpret_cast<void* (*)(std::size_t)>(dlsym(RTLD_NEXT, "malloc"));
    if (counting && ++made[0] == kinds[0].Refused) {
        errno = ENOMEM;
        return nullptr;
    }
    return original(size);
}

// The clock stands still, so that two runs draw the same.
extern "C" time_t time(time_t* now) {
    constexpr time_t kNow = 1'000'000'000;
    if (now != nullptr) {
        *now = kNow;
    }
    return kNow;
}
