/* The clock of the end-to-end cases (CLOCK in outcome.py) for a program that runs under emulation:
 * preloaded there, where libfaketime is not. The program asks the time in seconds alone. */
#include <time.h>

time_t time(time_t* result) {
    const time_t now = 1704164645; /* 2024-01-02 03:04:05 in UTC */
    if (result != NULL) {
        *result = now;
    }
    return now;
}
