#include <string.h>

/* Loaded and freed at each tick, so it brings no C++ runtime. */
int GetChannelType(char* buffer, int* length) {
    static const char channel[] = "bench_channel_1.0";
    memcpy(buffer, channel, sizeof channel);
    *length = (int)sizeof channel - 1;
    return 0;
}
